#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {

/// The value of a field: every ":" counts as ".", and then the number counts that the field begins with (see
/// LeadingNumber). Error 6 when it is too large.
template <typename CharType>
double FieldValue(std::basic_string_view<CharType> field) {
  constexpr CharType kColon = ':';
  constexpr CharType kPoint = '.';
  if (field.find(kColon) == field.npos) return LeadingNumber(field);
  std::basic_string<CharType> replaced(field);
  std::ranges::replace(replaced, kColon, kPoint);
  return LeadingNumber(std::basic_string_view<CharType>(replaced));
}

}  // namespace vorquill21
