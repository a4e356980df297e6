// Does with the library what check-data-files does with the reader and writer made from the page. It takes
// its orders from standard input, one a line, words separated by TAB, and answers each question with a line.
// Texts and doubles come and go as hexadecimal digits: of UTF-8, and as the C library reads and prints them.

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "vorquill21/vorquill21.hpp"

namespace {

using namespace vorquill21;

using Words = std::vector<std::string>;

/// The native locale with another decimal separator.
class ChosenSeparator : public Locale {
 public:
  char16_t DecimalSeparator() const override { return separator; }
  Text ShortTime() const override { return native_.ShortTime(); }
  Text ShortDate() const override { return native_.ShortDate(); }
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override {
    return native_.AppendFromCodePage(bytes, text);
  }
  void AppendToCodePage(TextView text, std::string& bytes) const override {
    native_.AppendToCodePage(text, bytes);
  }

  char16_t separator = u'.';

 private:
  Locale& native_ = Platform::Native().GetLocale();
};

class SilentDesktop : public Desktop {
 public:
  void ShowMessage(TextView, MessageStyle, TextView) override {}
  void Beep() override {}
  std::int32_t OpenDocument(const DocumentRequest&) override { return 0; }
  std::optional<Text> BrowseForFolder(std::int32_t, TextView) override { return std::nullopt; }
  std::int32_t SpecialFolder(std::int32_t, Text&) override { return 1; }
};

Words Split(const std::string& line) {
  Words words(1);
  for (const char c : line) {
    if (c == '\t') {
      words.emplace_back();
    } else {
      words.back() += c;
    }
  }
  return words;
}

Text Unhex(const std::string& digits) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  return FromUtf8(bytes);
}

std::string Hex(TextView text) {
  std::string digits;
  char pair[3];
  for (const char byte : ToUtf8(text)) {
    std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    digits += pair;
  }
  return digits;
}

double Number(const std::string& word) {
  return std::strtod(word.c_str(), nullptr);
}

std::string Shown(double number) {
  char digits[32];
  std::snprintf(digits, sizeof digits, "%a", number);
  return digits;
}

std::string Shown(const Variant& value) {
  if (const double* number = value.If<double>()) return Shown(*number);
  return Hex(value.As<Text>());
}

std::string ShownValues(const Variant& values) {
  if (!values.IsArray()) return Shown(values);
  std::string shown;
  for (std::int32_t i = 0; i <= ArrayBounds(values).upper; ++i) {
    if (i > 0) shown += '\t';
    shown += Shown(ArrayElement(values, i));
  }
  return shown;
}

std::string ShownTable(const Variant& table) {
  if (table.IsEmpty()) return "none";
  std::string shown = std::to_string(ArrayBounds(table, 2).upper + 1);
  for (const double cell : table.As<BoundedArray<double>>().Elements()) shown += '\t' + Shown(cell);
  return shown;
}

class Peer {
 public:
  /// Carries out one order; the answer, or nothing for an order without one.
  std::optional<std::string> Do(const Words& words) {
    try {
      return orders_.at(words.front())(words);
    } catch (const LibraryError& error) {
      return "error " + std::to_string(error.Number());
    }
  }

 private:
  using Order = std::function<std::optional<std::string>(const Words&)>;

  void New(char16_t separator) {
    locale_.separator = separator;
    stream_ = std::make_unique<CFileStream>(platform_);
  }

  std::optional<std::string> Write(const Words& words) {
    stream_->FileWrite(Unhex(words[1]));
    return std::nullopt;
  }

  std::optional<std::string> AddField(const Words& words) {
    std::vector<Variant> values;
    for (std::size_t i = 2; i < words.size(); ++i) {
      const Text text = Unhex(words[i].substr(1));
      if (words[i][0] == 'n') values.emplace_back(Number(ToUtf8(text)));
      if (words[i][0] == 't') values.emplace_back(text);
      if (words[i][0] == 'b') values.emplace_back(text == u"True");
    }
    stream_->AddField(Unhex(words[1]), BoundedArray<Variant>(std::move(values)));
    return std::nullopt;
  }

  std::optional<std::string> AddTable(const Words& words) {
    const auto columns = std::stoi(words[2]);
    const auto rows = static_cast<std::int32_t>(words.size() - 3) / columns;
    BoundedArray<double> table({0, rows - 1}, {0, columns - 1});
    for (std::size_t i = 3; i < words.size(); ++i) table.Elements()[i - 3] = Number(words[i]);
    stream_->AddTable2d(Unhex(words[1]), table);
    return std::nullopt;
  }

  std::optional<std::string> AddPages(const Words& words) {
    const auto rows = std::stoi(words[2]);
    const auto columns = std::stoi(words[3]);
    const auto pages = static_cast<std::int32_t>(words.size() - 4) / (rows * columns);
    BoundedArray<double> table({0, rows - 1}, {0, columns - 1}, {1, pages});
    std::size_t at = 4;
    for (std::int32_t page = 1; page <= pages; ++page) {
      for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t column = 0; column < columns; ++column)
          table(row, column, page) = Number(words[at++]);
      }
    }
    stream_->AddTable3d(Unhex(words[1]), table);
    return std::nullopt;
  }

  std::optional<std::string> IsAccepted(const Words& words) {
    BoundedArray<Variant> versions(std::vector<Variant>(words.size() - 1));
    for (std::size_t i = 1; i < words.size(); ++i)
      versions(static_cast<std::int32_t>(i - 1)) = Unhex(words[i]);
    CFileStream program(platform_);
    program.Initialise(u"", versions);
    program.FileRead(path_);
    const bool isAccepted = program.IsCompatibleVersion(true, Missing{}, u"");
    return isAccepted ? "True" : "False";
  }

  ChosenSeparator locale_;
  SilentDesktop desktop_;
  Platform platform_{Platform::Native().GetFiles(), desktop_, locale_, Platform::Native().GetProcess(),
                     Platform::Native().GetSettings()};
  std::unique_ptr<CFileStream> stream_;
  Text path_;  // of the file that was read

  const std::map<std::string, Order> orders_{
      {"new",
       [this](const Words& words) {
         New(Unhex(words[2])[0]);
         stream_->Initialise(Unhex(words[1]), BoundedArray<Variant>::Empty());
         return std::nullopt;
       }},
      {"field", [this](const Words& words) { return AddField(words); }},
      {"table", [this](const Words& words) { return AddTable(words); }},
      {"pages", [this](const Words& words) { return AddPages(words); }},
      {"write", [this](const Words& words) { return Write(words); }},
      {"read",
       [this](const Words& words) {
         New(u'.');
         path_ = Unhex(words[1]);
         return stream_->FileRead(path_) ? "read" : "unreadable";
       }},
      {"is there",
       [this](const Words& words) { return stream_->FieldExists(Unhex(words[1])) ? "True" : "False"; }},
      {"texts", [this](const Words& words) { return ShownValues(stream_->GetFieldString(Unhex(words[1]))); }},
      {"numbers",
       [this](const Words& words) { return ShownValues(stream_->GetFieldNumber(Unhex(words[1]))); }},
      {"cells", [this](const Words& words) { return ShownTable(stream_->GetTable2d(Unhex(words[1]))); }},
      {"version parts",
       [this](const Words&) {
         const Text type = stream_->FileVersionType();
         return Hex(type) + '\t' + Hex(stream_->FileVersionNumber());
       }},
      {"is accepted", [this](const Words& words) { return IsAccepted(words); }},
  };
};

}  // namespace

int main() {
  Peer peer;
  for (std::string line; std::getline(std::cin, line);) {
    if (const auto answer = peer.Do(Split(line))) std::cout << *answer << '\n';
  }
}
