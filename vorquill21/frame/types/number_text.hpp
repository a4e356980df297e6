#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// Room that WriteNumber needs. (A text has 22 units at the most.)
inline constexpr std::size_t kNumberTextCapacity = 24;

/// Writes the text of `value` and returns the position after its last unit. `out` has room for
/// kNumberTextCapacity units; those after the text are left with anything. Cost: constant, greater for the
/// few numbers (the subnormal ones, and one in thousands of the others) that need exact arithmetic.
///
/// The number is rounded to 15 significant digits (the exact decimal value of the double, a half to the even
/// digit), without trailing zeros and without a bare separator. Exponents from -5 down and from 15 up are
/// written with "E", a sign and at least two digits: 1E-05, 1.5E+15. Both zeros are "0"; what is not finite
/// is "INF", "-INF" or "NAN".
VORQUILL21_API char16_t* WriteNumber(double value, char16_t decimalSeparator, char16_t* out) noexcept;

/// The same as a text of its own.
VORQUILL21_API Text NumberToText(double value, char16_t decimalSeparator);

/// Plain decimal digits with a "-" for negative numbers.
VORQUILL21_API Text NumberToText(std::int32_t value);

/// The number that the whole of `text` spells, or nothing.
///
/// Form: white space (blank, tab, CR, LF) around; an optional sign; digits with at most one separator and at
/// least one digit; optionally E, e, D or d, an optional sign and at least one digit. No thousands
/// separators, no currency, no hexadecimal, no "inf". The result is the double nearest to the decimal value,
/// a half to even; what lies beyond the largest double is no number, what lies below the smallest is 0.
VORQUILL21_API std::optional<double> TextToNumber(TextView text, char16_t decimalSeparator) noexcept;
VORQUILL21_API std::optional<double> TextToNumber(std::string_view text, char decimalSeparator) noexcept;

/// What ParseNumber found.
template <typename Unit>
struct ParsedNumber {
  double value;     ///< the number; 0 when there is none, infinite (with its sign) beyond the largest double
  const Unit* end;  ///< after the last unit of the number; where it began when there is none
};

/// Reads the longest number of the form above that stands at `begin`, without white space around it. Nothing
/// from `end` on is touched. Cost: constant up to 19 digits and a short exponent.
VORQUILL21_API ParsedNumber<char16_t> ParseNumber(const char16_t* begin, const char16_t* end,
                                                  char16_t decimalSeparator) noexcept;
VORQUILL21_API ParsedNumber<char> ParseNumber(const char* begin, const char* end,
                                              char decimalSeparator) noexcept;

/// The number that `text` begins with: leading blanks are skipped, then the longest prefix of the form above
/// with the separator "." counts; 0 when there is none. Beyond the largest double is error 6.
VORQUILL21_API double LeadingNumber(TextView text);
VORQUILL21_API double LeadingNumber(std::string_view text);

}  // namespace vorquill21
