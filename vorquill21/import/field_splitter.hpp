#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {

/// Takes the fields of a line one after the other, for bytes of a code page as well as for texts.
template <typename CharType>
class FieldSplitter {
 public:
  using View = std::basic_string_view<CharType>;

  /// The delimiter is not empty.
  explicit FieldSplitter(std::basic_string<CharType> delimiter)
      : delimiter_(std::move(delimiter)),
        onlySeparates_(delimiter_.size() == 1 && !IsPartOfNumberOrLineEnd(delimiter_[0])) {}

  /// Takes the next field and the delimiter after it off the front of `asLine`. Delimiters before the field
  /// go first, so that no field is empty; false, and an empty field, when nothing else is left.
  bool GetNextField(View& asLine, View& asField) const {
    while (asLine.starts_with(delimiter_)) asLine.remove_prefix(delimiter_.size());
    const std::size_t length = asLine.find(delimiter_);
    asField = asLine.substr(0, length);
    asLine.remove_prefix(length == View::npos ? asLine.size() : length + delimiter_.size());
    return !asField.empty();
  }

  /// Reads the values of the first fields of a line; false when it has fewer fields than there are values.
  bool GetRow(View line, std::span<double> row) const {
    View field;
    for (double& value : row) {
      if (!GetNextField(line, field)) return false;
      value = FieldValue(field);
    }
    return true;
  }

  /// The same for a line that begins where `text` does, wherever it ends. A number ends where its field does,
  /// so that the row is gone through once. The result is the end of the last field; it is null when the row
  /// cannot be told from `text`: that or the line ends before, or the delimiter is not a single character
  /// that neither numbers nor line ends hold.
  const CharType* GetRowAtFront(View text, std::span<double> row) const {
    if (!onlySeparates_) return nullptr;
    const CharType delimiter = delimiter_[0];
    const CharType* next = text.data();
    const CharType* const end = next + text.size();
    for (double& value : row) {
      while (next != end && *next == delimiter) ++next;
      const ParsedNumber<CharType> parsed = ParseNumber(next, end, kPoint);
      const CharType* fieldEnd = parsed.end;
      while (fieldEnd != end && !EndsField(*fieldEnd, delimiter)) ++fieldEnd;
      if (fieldEnd == end || fieldEnd == next) return nullptr;
      const bool isPlain = fieldEnd == parsed.end && std::isfinite(parsed.value);
      value = isPlain ? parsed.value : FieldValue(View(next, static_cast<std::size_t>(fieldEnd - next)));
      next = fieldEnd;
    }
    return next;
  }

 private:
  static constexpr CharType kColon = ':';
  static constexpr CharType kPoint = '.';

  static bool IsPartOfNumberOrLineEnd(CharType character) {
    constexpr std::string_view kCharacters = "+-.0123456789DEde\r\n";
    return std::ranges::find(kCharacters, character) != kCharacters.end();
  }

  static bool EndsField(CharType character, CharType delimiter) {
    return character == delimiter || character == '\r' || character == '\n';
  }

  /// Every ":" counts as ".", and then the number counts that the field begins with. Error 6 when it is too
  /// large.
  static double FieldValue(View field) {
    if (field.find(kColon) == View::npos) return LeadingNumber(field);
    std::basic_string<CharType> replaced(field);
    std::ranges::replace(replaced, kColon, kPoint);
    return LeadingNumber(View(replaced));
  }

  std::basic_string<CharType> delimiter_;
  bool onlySeparates_;  // the delimiter is a single character that neither numbers nor line ends hold
};

}  // namespace vorquill21
