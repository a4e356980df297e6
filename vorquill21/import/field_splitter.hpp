#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "vorquill21/import/field_value.hpp"
#include "vorquill21/import/row_reader.hpp"

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

  /// Rows at the front of a text.
  struct Rows {
    std::size_t count;
    const char* end;  ///< where the line after them begins
  };

  /// Reads the rows of `columnCount` values at the front of `text`, one behind the other into `values`: as
  /// many as that has room for and RowReader can read, none when the delimiter is not what that needs.
  Rows GetRowsAtFront(std::string_view text, std::size_t columnCount,
                      std::span<double> values) const requires std::same_as<CharType, char> {
    Rows rows{0, text.data()};
    if (!onlySeparates_) return rows;
    RowReader reader(text, delimiter_[0]);
    while (values.size() >= columnCount && reader.ReadRow(values.first(columnCount))) {
      values = values.subspan(columnCount);
      ++rows.count;
    }
    rows.end = reader.RowsEnd();
    return rows;
  }

 private:
  static bool IsPartOfNumberOrLineEnd(CharType character) {
    constexpr std::string_view kCharacters = "+-.0123456789DEde\r\n";
    return std::ranges::find(kCharacters, character) != kCharacters.end();
  }

  std::basic_string<CharType> delimiter_;
  bool onlySeparates_;  // the delimiter is a single character that neither numbers nor line ends hold
};

}  // namespace vorquill21
