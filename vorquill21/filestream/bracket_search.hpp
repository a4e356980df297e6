#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>

#include "vorquill21/frame/types/text.hpp"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorquill21 {

/// Position of the first unit of `sought...` in `text` at or after `from`, which is at most the length; the
/// length when there is none.
template <typename... Units>
std::size_t FindUnit(TextView text, std::size_t from, Units... sought) noexcept {
  std::size_t at = from;
#ifdef __SSE2__
  constexpr std::size_t kLane = sizeof(__m128i) / sizeof(char16_t);
  for (; text.size() - at >= kLane; at += kLane) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    const auto equalTo = [units](char16_t unit) {
      return static_cast<unsigned>(
          _mm_movemask_epi8(_mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(unit)))));
    };
    const unsigned equalBytes = (equalTo(sought) | ...);
    if (equalBytes != 0)
      return at + static_cast<std::size_t>(std::countr_zero(equalBytes)) / sizeof(char16_t);
  }
#endif
  while (at < text.size() && ((text[at] != sought) && ...)) ++at;
  return at;
}

/// Position of the first "[" or "]" in `text` at or after `from`; the length when there is none.
inline std::size_t FindBracket(TextView text, std::size_t from) noexcept {
  return FindUnit(text, from, u'[', u']');
}

/// True when "[name]" stands in `text` at the position `at` of a "[".
inline bool BracketedNameIsAt(TextView text, std::size_t at, TextView name) noexcept {
  const TextView rest = text.substr(at + 1);
  return rest.size() > name.size() && rest[name.size()] == u']' &&
         std::equal(name.begin(), name.end(), rest.begin());
}

/// Position of the first "[name]" in `text` at or after `from`; the length when there is none.
inline std::size_t FindBracketedName(TextView text, TextView name, std::size_t from) noexcept {
  std::size_t at = FindUnit(text, from, u'[');
  while (at < text.size() && !BracketedNameIsAt(text, at, name)) at = FindUnit(text, at + 1, u'[');
  return at;
}

}  // namespace vorquill21
