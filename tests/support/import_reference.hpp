#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/platform/locale.hpp"

namespace vorquill21::test {

/// What a column import is asked for.
struct ImportOptions {
  Text delimiter;
  std::int32_t headerRow = 1;
  std::int32_t firstValueRow = 2;
  std::int32_t maxColumns = 20;
};

/// What it comes to, for an object that has imported nothing before.
struct ImportOutcome {
  bool isSuccessful = false;
  Text status;
  std::int32_t columnCount = 0;
  std::int32_t dataRowCount = 0;
  std::vector<Text>
      headers;  // where the header line was not completed, without the empty positions after them
  std::vector<std::vector<double>> columns;
};

/// The import of a file that can be read, written for clarity alone: the whole file is taken apart into lines
/// of text, and fields are cut off them unit by unit.
class ImportReference {
 public:
  static ImportOutcome Import(std::string_view bytes, const ImportOptions& options, const Locale& locale) {
    ImportReference reference(Lines(bytes, locale), options);
    ImportOutcome& outcome = reference.outcome_;
    outcome.isSuccessful = reference.Run();
    if (!outcome.isSuccessful) {
      outcome.status = u"CImportColumnData.ImportData: An error occurred while importing data";
    }
    return outcome;
  }

 private:
  ImportReference(std::vector<Text> lines, const ImportOptions& options) : lines_(lines), options_(options) {}

  static std::vector<Text> Lines(std::string_view bytes, const Locale& locale) {
    std::vector<Text> lines;
    std::string line;
    bool isOpen = false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      isOpen = bytes[i] != '\r' && bytes[i] != '\n';
      if (isOpen) {
        line += bytes[i];
        continue;
      }
      if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
      lines.push_back(FromCodePage(locale, line));
      line.clear();
    }
    if (isOpen) lines.push_back(FromCodePage(locale, line));
    return lines;
  }

  bool Run() {
    if (options_.delimiter.empty() || options_.maxColumns <= 0) return false;
    return TakeHeaders() && PassLines() && TakeRows();
  }

  bool TakeHeaders() {
    Text line;
    for (std::int64_t row = 1; row <= options_.headerRow; ++row) {
      if (next_ == lines_.size()) return false;
      line = lines_[next_++];
    }
    Text field;
    while (GetNextField(line, field)) {
      if (outcome_.columnCount == options_.maxColumns - 1) {
        const std::string limit = std::to_string(options_.maxColumns);
        outcome_.status = u"Maximum number of data columns exceeded. Columns " +
                          Text(limit.begin(), limit.end()) + u" and above will be ignored.";
        break;
      }
      outcome_.headers.push_back(field);
      ++outcome_.columnCount;
    }
    return outcome_.columnCount > 0;
  }

  bool PassLines() {
    const std::int64_t count = std::int64_t{options_.firstValueRow} - options_.headerRow - 1;
    if (count < INT32_MIN) return false;
    for (std::int64_t passed = 0; passed < count; ++passed) {
      if (next_ == lines_.size()) return false;
      ++next_;
    }
    return true;
  }

  bool TakeRows() {
    const auto columnCount = static_cast<std::size_t>(outcome_.columnCount);
    std::vector<std::vector<double>> rows;
    for (; next_ < lines_.size(); ++next_) {
      Text line = lines_[next_];
      Text field;
      std::vector<double> row;
      while (row.size() < columnCount && GetNextField(line, field)) {
        const std::optional<double> value = Value(field);
        if (!value) return false;
        row.push_back(*value);
      }
      if (row.size() < columnCount) break;
      rows.push_back(row);
    }
    outcome_.dataRowCount = static_cast<std::int32_t>(rows.size());
    outcome_.columns.resize(columnCount);
    for (const std::vector<double>& row : rows) {
      for (std::size_t column = 0; column < columnCount; ++column) {
        outcome_.columns[column].push_back(row[column]);
      }
    }
    return true;
  }

  bool GetNextField(Text& line, Text& field) const {
    const Text& delimiter = options_.delimiter;
    while (!line.empty() && line.substr(0, delimiter.size()) == delimiter) line.erase(0, delimiter.size());
    const std::size_t at = line.find(delimiter);
    if (at != Text::npos) {
      field = line.substr(0, at);
      line.erase(0, at + delimiter.size());
      return true;
    }
    field = line;
    line.clear();
    return !field.empty();
  }

  /// Nothing when the number is too large. Needs the C locale, which a program has unless it chooses another.
  static std::optional<double> Value(const Text& field) {
    std::string prefix;
    std::size_t at = field.find_first_not_of(u' ');
    const auto unit = [&](std::size_t i) {
      if (i >= field.size() || field[i] > u'~') return '\0';
      return field[i] == u':' ? '.' : static_cast<char>(field[i]);
    };
    const auto takeDigits = [&] {
      const std::size_t from = prefix.size();
      while (unit(at) >= '0' && unit(at) <= '9') prefix += unit(at++);
      return prefix.size() - from;
    };
    if (at == Text::npos) return 0.0;
    if (unit(at) == '+' || unit(at) == '-') prefix += unit(at++);
    std::size_t digits = takeDigits();
    if (unit(at) == '.') {
      prefix += unit(at++);
      digits += takeDigits();
    }
    if (digits == 0) return 0.0;
    if (std::string_view("EeDd").find(unit(at)) != std::string_view::npos) {
      const std::size_t withoutExponent = prefix.size();
      prefix += 'e';
      ++at;
      if (unit(at) == '+' || unit(at) == '-') prefix += unit(at++);
      if (takeDigits() == 0) prefix.resize(withoutExponent);
    }
    const double value = std::strtod(prefix.c_str(), nullptr);
    if (std::isinf(value)) return std::nullopt;
    return value;
  }

  std::vector<Text> lines_;
  ImportOptions options_;
  std::size_t next_ = 0;
  ImportOutcome outcome_;
};

}  // namespace vorquill21::test
