#include "vorquill21/platform/settings_document.hpp"

#include <algorithm>
#include <charconv>

namespace vorquill21 {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

bool IsSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

bool BeginsPair(TextView text, std::size_t at) {
  return text[at] >= 0xD800 && text[at] <= 0xDBFF && at + 1 < text.size() && text[at + 1] >= 0xDC00 &&
         text[at + 1] <= 0xDFFF;
}

std::string EscapedUnit(char16_t unit) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string escape = "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) escape += kDigits[(unit >> shift) & 0xF];
  return escape;
}

/// A name or value as it stands in a line; `special` are the further units that mean something there.
std::string Escaped(TextView text, TextView special) {
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const bool isOuterBlank = unit == u' ' && (i == 0 || i + 1 == text.size());
    if (BeginsPair(text, i)) {
      escaped += ToUtf8(text.substr(i++, 2));
    } else if (unit == u'\\') {
      escaped += "\\\\";
    } else if (unit == u'\t') {
      escaped += "\\t";
    } else if (unit == u'\r') {
      escaped += "\\r";
    } else if (unit == u'\n') {
      escaped += "\\n";
    } else if (unit < u' ' || isOuterBlank || IsSurrogate(unit) || special.find(unit) != TextView::npos) {
      escaped += EscapedUnit(unit);
    } else {
      escaped += ToUtf8(text.substr(i, 1));
    }
  }
  return escaped;
}

std::string EscapedName(TextView name) {
  return Escaped(name, u"[]=#;");
}

std::string EscapedValue(TextView value) {
  return Escaped(value, {});
}

/// The unit that the escape at the front of `text` stands for; the escape is taken off.
char16_t TakeEscape(TextView& text) {
  constexpr std::size_t kLengthWithDigits = 6;
  const char16_t letter = text.size() > 1 ? text[1] : u'\0';
  std::size_t length = 2;
  char16_t unit = u'\\';
  switch (letter) {
    case u'\\':
      break;
    case u't':
      unit = u'\t';
      break;
    case u'r':
      unit = u'\r';
      break;
    case u'n':
      unit = u'\n';
      break;
    default:
      length = 1;
  }
  if (letter == u'u' && text.size() >= kLengthWithDigits) {
    const std::string digits = ToUtf8(text.substr(2, kLengthWithDigits - 2));
    unsigned value = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (parsed.ptr == digits.data() + kLengthWithDigits - 2) {
      unit = static_cast<char16_t>(value);
      length = kLengthWithDigits;
    }
  }
  text.remove_prefix(length);
  return unit;
}

Text Unescaped(std::string_view bytes) {
  const Text escaped = FromUtf8(bytes);
  Text text;
  for (TextView rest = escaped; !rest.empty();) {
    if (rest.front() == u'\\') {
      text += TakeEscape(rest);
    } else {
      text += rest.front();
      rest.remove_prefix(1);
    }
  }
  return text;
}

/// The name in a line "[name]", or nothing for any other line.
std::optional<Text> SectionOf(std::string_view line) {
  line = Trimmed(line);
  if (line.size() < 2 || line.front() != '[' || line.back() != ']') return std::nullopt;
  return Unescaped(Trimmed(line.substr(1, line.size() - 2)));
}

struct KeyAndValue {
  Text key;
  Text value;
};

/// The parts of a line "key=value", or nothing for any other line.
std::optional<KeyAndValue> KeyAndValueOf(std::string_view line) {
  line = Trimmed(line);
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || line.front() == '#' || line.front() == ';') return std::nullopt;
  return KeyAndValue{Unescaped(Trimmed(line.substr(0, equals))), Unescaped(Trimmed(line.substr(equals + 1)))};
}

}  // namespace

SettingsDocument::SettingsDocument(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::string_view line = bytes.substr(0, bytes.find('\n'));
    lines_.emplace_back(line);
    bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
  }
}

SettingsDocument::Place SettingsDocument::FindPlace(TextView section, TextView key) const {
  Place place{lines_.size(), false, false};
  bool inSection = false;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (const auto name = SectionOf(lines_[i])) {
      inSection = EqualIgnoringCase(*name, section);
      if (inSection && !place.hasSection) place = {i + 1, true, false};
    } else if (const auto pair = KeyAndValueOf(lines_[i]); pair && inSection) {
      if (EqualIgnoringCase(pair->key, key)) return {i, true, true};
      place.line = i + 1;
    }
  }
  return place;
}

std::optional<Text> SettingsDocument::Find(TextView section, TextView key) const {
  const Place place = FindPlace(section, key);
  if (!place.hasValue) return std::nullopt;
  return KeyAndValueOf(lines_[place.line])->value;
}

void SettingsDocument::Put(TextView section, TextView key, TextView value) {
  const std::string line = EscapedName(key) + '=' + EscapedValue(value);
  const Place place = FindPlace(section, key);
  if (place.hasValue) {
    lines_[place.line] = line;
    return;
  }
  if (!place.hasSection) {
    lines_.push_back('[' + EscapedName(section) + ']');
    lines_.push_back(line);
    return;
  }
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place.line), line);
}

std::string SettingsDocument::ToBytes() const {
  std::string bytes;
  for (const std::string& line : lines_) bytes.append(line).append("\n");
  return bytes;
}

}  // namespace vorquill21
