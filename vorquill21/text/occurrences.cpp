#include "vorquill21/text/occurrences.hpp"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorquill21 {
namespace {

/// Bit i tells whether units[i] is `unit`, for `count` units, 64 at most.
std::uint64_t MaskOfEqualUnits(const char16_t* units, std::size_t count, char16_t unit) noexcept {
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < count; ++i) mask |= std::uint64_t{units[i] == unit} << i;
  return mask;
}

#ifdef __SSE2__

/// The same for 64 units.
std::uint64_t MaskOf64EqualUnits(const char16_t* units, char16_t unit) noexcept {
  const __m128i wanted = _mm_set1_epi16(static_cast<short>(unit));
  const auto equal = [&](int eighth) {
    return _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(units) + eighth), wanted);
  };
  std::uint64_t mask = 0;
  for (int quarter = 0; quarter < 4; ++quarter) {
    const __m128i bytes = _mm_packs_epi16(equal(2 * quarter), equal(2 * quarter + 1));
    mask |= static_cast<std::uint64_t>(_mm_movemask_epi8(bytes)) << (16 * quarter);
  }
  return mask;
}

#else

std::uint64_t MaskOf64EqualUnits(const char16_t* units, char16_t unit) noexcept {
  return MaskOfEqualUnits(units, 64, unit);
}

#endif

}  // namespace

std::uint64_t Occurrences::Candidates(TextView text, TextView sought, std::size_t count) noexcept {
  const auto equalUnits = [count](const char16_t* units, char16_t unit) {
    return count == kBlock ? MaskOf64EqualUnits(units, unit) : MaskOfEqualUnits(units, count, unit);
  };
  const std::uint64_t mask = equalUnits(text.data(), sought.front());
  if (sought.size() == 1) return mask;
  return mask & equalUnits(text.data() + sought.size() - 1, sought.back());
}

}  // namespace vorquill21
