#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>

#include "vorquill21/frame/types/text.hpp"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorquill21 {

#ifdef __SSE2__

/// Eight units, of which each comparison gives two bits.
inline constexpr std::size_t kLane = sizeof(__m128i) / sizeof(char16_t);

inline unsigned MatchesInLane(const char16_t* lane, char16_t unit) noexcept {
  const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(lane));
  const __m128i sought = _mm_set1_epi16(static_cast<short>(unit));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(units, sought)));
}

inline std::size_t FirstOfMatches(unsigned matches) noexcept {
  return static_cast<std::size_t>(std::countr_zero(matches)) / 2;
}

#endif

/// Position of the first unit of `sought...` in `text` at or after `from`, which is at most the length; the
/// length when there is none.
template <typename... Units>
std::size_t FindUnit(TextView text, std::size_t from, Units... sought) noexcept {
  std::size_t at = from;
#ifdef __SSE2__
  const auto matchesAt = [=](std::size_t lane) { return (MatchesInLane(text.data() + lane, sought) | ...); };
  for (; text.size() - at >= kLane; at += kLane) {
    if (const unsigned matches = matchesAt(at)) return at + FirstOfMatches(matches);
  }
  if (text.size() >= kLane) {
    const std::size_t lastLane = text.size() - kLane;
    const unsigned matches = matchesAt(lastLane) >> 2 * (at - lastLane);
    return matches != 0 ? at + FirstOfMatches(matches) : text.size();
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
  std::size_t at = from;
#ifdef __SSE2__
  const std::size_t toEnd = name.size() + 1;
  for (; at + toEnd + kLane <= text.size(); at += kLane) {
    const char16_t* const lane = text.data() + at;
    unsigned matches = MatchesInLane(lane, u'[') & MatchesInLane(lane + toEnd, u']');
    for (; matches != 0; matches &= matches - 1, matches &= matches - 1) {
      const std::size_t bracket = at + FirstOfMatches(matches);
      if (BracketedNameIsAt(text, bracket, name)) return bracket;
    }
  }
#endif
  while ((at = FindUnit(text, std::min(at, text.size()), u'[')) < text.size()) {
    if (BracketedNameIsAt(text, at, name)) return at;
    ++at;
  }
  return at;
}

}  // namespace vorquill21
