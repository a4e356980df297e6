#pragma once

#include <cmath>
#include <cstddef>
#include <span>
#include <string_view>

#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/import/field_value.hpp"
#include "vorquill21/import/plain_number.hpp"
#include "vorquill21/import/separator_finder.hpp"

namespace vorquill21 {

/// Reads rows at the front of a text that may go on behind its end, in one pass. The delimiter is a character
/// that neither numbers nor line ends hold.
class RowReader {
 public:
  RowReader(std::string_view text, char delimiter) noexcept
      : separators_(text, delimiter),
        delimiter_(delimiter),
        next_(text.data()),
        end_(text.data() + text.size()),
        rowsEnd_(text.data()) {}

  /// Reads the values of the next line's first fields. False, and the values are anything, when it cannot be
  /// told whether there are as many, or where the line ends: that is so for short lines, too. Then no further
  /// row can be read. Error 6 for a number that is too large.
  bool ReadRow(std::span<double> row) {
    separator_ = separators_.Next();
    for (double& value : row) {
      if (!FindField()) return false;
      const std::string_view field(next_, static_cast<std::size_t>(separator_ - next_));
      if (!ReadPlainNumber(field, end_, value)) value = UnusualValue(field);
      next_ = separator_;
    }
    return PassLineEnd();
  }

  /// Where the line after those rows begins.
  const char* RowsEnd() const noexcept { return rowsEnd_; }

 private:
  /// Passes over delimiters, so that a field lies in [next_, separator_); false when none does for certain.
  bool FindField() noexcept {
    while (separator_ == next_) {
      if (next_ == end_ || *next_ != delimiter_) return false;
      ++next_;
      separator_ = separators_.Next();
    }
    return separator_ != end_;
  }

  /// Passes over fields that are too many. A CR is no line end for certain when the text ends with it.
  bool PassLineEnd() noexcept {
    while (separator_ != end_ && *separator_ == delimiter_) separator_ = separators_.Next();
    if (separator_ == end_) return false;
    next_ = separator_ + 1;
    if (*separator_ == '\r') {
      if (next_ == end_) return false;
      if (*next_ == '\n') next_ = separators_.Next() + 1;
    }
    rowsEnd_ = next_;
    return true;
  }

  /// The value of any field. It stays out of the way of the usual ones.
  [[gnu::noinline]] double UnusualValue(std::string_view field) const {
    const auto [value, numberEnd] = ParseNumber(field.data(), end_, '.');
    const bool isWhole = numberEnd == field.data() + field.size();
    return isWhole && std::isfinite(value) ? value : FieldValue(field);
  }

  SeparatorFinder separators_;
  char delimiter_;
  const char* next_;
  const char* separator_ = nullptr;  // the first one from next_ on
  const char* end_;
  const char* rowsEnd_;
};

}  // namespace vorquill21
