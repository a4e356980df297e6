#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorquill21 {

/// Sixteen decimal digits (0 to 9 each) side by side, the first one in the lowest byte of `first`.
struct SixteenDigits {
  std::uint64_t first;
  std::uint64_t second;

  /// Without the first `count` digits (below 16), zeros coming in at the end.
  SixteenDigits Without(unsigned count) const noexcept {
#if defined(__SIZEOF_INT128__)
    const Wide moved = AsWide() >> 8 * count;
    return {static_cast<std::uint64_t>(moved), static_cast<std::uint64_t>(moved >> 64)};
#else
    if (count >= 8) return {second >> 8 * (count - 8), 0};
    if (count == 0) return *this;
    return {first >> 8 * count | second << (64 - 8 * count), second >> 8 * count};
#endif
  }

  /// After `count` zeros (below 16), the last `count` digits falling off.
  SixteenDigits AfterZeros(unsigned count) const noexcept {
#if defined(__SIZEOF_INT128__)
    const Wide moved = AsWide() << 8 * count;
    return {static_cast<std::uint64_t>(moved), static_cast<std::uint64_t>(moved >> 64)};
#else
    if (count >= 8) return {0, first << 8 * (count - 8)};
    if (count == 0) return *this;
    return {first << 8 * count, second << 8 * count | first >> (64 - 8 * count)};
#endif
  }

  /// Without the digit at `position` (below 16), a zero coming in at the end.
  SixteenDigits WithoutOne(unsigned position) const noexcept {
    const SixteenDigits kept{LowBytes(position), position < 8 ? 0 : LowBytes(position - 8)};
    const SixteenDigits moved = Without(1);
    return {(first & kept.first) | (moved.first & ~kept.first),
            (second & kept.second) | (moved.second & ~kept.second)};
  }

 private:
#if defined(__SIZEOF_INT128__)
  __extension__ using Wide = unsigned __int128;

  Wide AsWide() const noexcept {
    return Wide{second} << 64 | first;
  }
#endif

  /// Ones in the lowest `count` bytes, in all of them from 8 on.
  static constexpr std::uint64_t LowBytes(unsigned count) noexcept {
    return count < 8 ? (std::uint64_t{1} << 8 * count) - 1 : ~std::uint64_t{0};
  }
};

/// The eight digits of a number below 10^8, the first in the lowest byte: halves, quarters and single digits
/// are split off side by side, each division being a product and a shift.
constexpr std::uint64_t EightDigitsOf(std::uint32_t number) noexcept {
  const std::uint64_t fours = number / 10000 | std::uint64_t{number % 10000} << 32;
  const std::uint64_t hundreds = (fours * 10486 >> 20) & 0x0000007F0000007F;
  const std::uint64_t pairs = hundreds | (fours - 100 * hundreds) << 16;
  const std::uint64_t tens = (pairs * 103 >> 10) & 0x000F000F000F000F;
  return tens | (pairs - 10 * tens) << 8;
}

/// The number that eight digits spell, the first in the lowest byte: neighbours are joined to pairs, and
/// pairs to fours and to the whole, side by side.
constexpr std::uint32_t NumberOfEightDigits(std::uint64_t digits) noexcept {
  constexpr std::uint64_t kPairMask = 0x000000FF000000FF;
  const std::uint64_t pairs = digits * 10 + (digits >> 8);
  const std::uint64_t odd = (pairs & kPairMask) * ((std::uint64_t{1000000} << 32) + 100);
  const std::uint64_t even = (pairs >> 16 & kPairMask) * ((std::uint64_t{10000} << 32) + 1);
  return static_cast<std::uint32_t>((odd + even) >> 32);
}

/// Writes sixteen digits as units from "0" to "9".
inline void WriteDigits(const SixteenDigits& digits, char16_t* out) noexcept {
#ifdef __SSE2__
  const __m128i bytes =
      _mm_set_epi64x(static_cast<long long>(digits.second), static_cast<long long>(digits.first));
  const __m128i characters = _mm_or_si128(bytes, _mm_set1_epi8('0'));
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(characters, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(characters, zero));
#else
  for (unsigned i = 0; i < 8; ++i) {
    out[i] = static_cast<char16_t>(u'0' + (digits.first >> 8 * i & 0xF));
    out[i + 8] = static_cast<char16_t>(u'0' + (digits.second >> 8 * i & 0xF));
  }
#endif
}

}  // namespace vorquill21
