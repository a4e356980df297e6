#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "vorquill21/frame/types/library_error.hpp"
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
        endsNumbers_(delimiter_.size() == 1 && !IsPartOfNumbers(delimiter_[0])) {}

  /// Takes the next field and the delimiter after it off the front of `asLine`. Delimiters before the field
  /// go first, so that no field is empty; false, and an empty field, when nothing else is left.
  bool GetNextField(View& asLine, View& asField) const {
    while (asLine.starts_with(delimiter_)) asLine.remove_prefix(delimiter_.size());
    const std::size_t length = asLine.find(delimiter_);
    asField = asLine.substr(0, length);
    asLine.remove_prefix(length == View::npos ? asLine.size() : length + delimiter_.size());
    return !asField.empty();
  }

  /// The same, giving the field's value: every ":" counts as ".", and then the number counts that the field
  /// begins with. Error 6 when it is too large.
  bool GetNextNumber(View& line, double& number) const {
    return (endsNumbers_ && GetPlainNumber(line, number)) || GetAnyNumber(line, number);
  }

 private:
  static constexpr CharType kColon = ':';
  static constexpr CharType kPoint = '.';

  static bool IsPartOfNumbers(CharType character) {
    constexpr std::string_view kCharacters = "+-.0123456789DEde";
    return std::ranges::find(kCharacters, character) != kCharacters.end();
  }

  /// Takes a field that is a number from its first to its last character. False, and nothing taken, when the
  /// next field is anything else. Where the number ends the field does, so that the line is gone through
  /// once.
  bool GetPlainNumber(View& line, double& number) const {
    const CharType* begin = line.data();
    const CharType* const end = begin + line.size();
    const CharType delimiter = delimiter_[0];
    while (begin != end && *begin == delimiter) ++begin;
    const ParsedNumber<CharType> parsed = ParseNumber(begin, end, kPoint);
    const bool isWholeField = parsed.end == end || *parsed.end == delimiter;
    if (parsed.end == begin || !isWholeField || std::isinf(parsed.value)) return false;
    number = parsed.value;
    line = View(parsed.end, static_cast<std::size_t>(end - parsed.end));
    return true;
  }

  bool GetAnyNumber(View& line, double& number) const {
    View field;
    if (!GetNextField(line, field)) return false;
    number = field.find(kColon) == View::npos ? LeadingNumber(field) : NumberWithColons(field);
    return true;
  }

  static double NumberWithColons(View field) {
    std::basic_string<CharType> replaced(field);
    std::ranges::replace(replaced, kColon, kPoint);
    return LeadingNumber(View(replaced));
  }

  std::basic_string<CharType> delimiter_;
  bool endsNumbers_;  // the delimiter is a single character that no number holds
};

}  // namespace vorquill21
