#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorquill21 {

#ifdef __SSE2__

/// Sixteen bytes side by side; a decimal digit is a byte from 0 to 9.
using SixteenBytes = __m128i;

namespace digits_detail {

struct ByteMasks {
  alignas(16) std::uint8_t bytes[17][16]{};
};

constexpr ByteMasks MakeByteMasks() noexcept {
  ByteMasks masks;
  for (std::size_t count = 0; count <= 16; ++count) {
    for (std::size_t i = 0; i < count; ++i) masks.bytes[count][i] = 0xFF;
  }
  return masks;
}

inline constexpr ByteMasks kFirstBytes = MakeByteMasks();

}  // namespace digits_detail

/// FF in the first `count` (up to 16) bytes, 0 in the others.
inline SixteenBytes FirstBytes(unsigned count) noexcept {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(digits_detail::kFirstBytes.bytes[count]));
}

/// The bytes of `first` where `mask` is FF, those of `second` where it is 0.
inline SixteenBytes Select(SixteenBytes mask, SixteenBytes first, SixteenBytes second) noexcept {
  return _mm_or_si128(_mm_and_si128(mask, first), _mm_andnot_si128(mask, second));
}

/// One bit for each byte that is FF, the lowest for the first byte.
inline unsigned BitsOf(SixteenBytes mask) noexcept {
  return static_cast<unsigned>(_mm_movemask_epi8(mask));
}

/// The sixteen digits of a number below 10^16: it is cut in halves, those in halves, and so on, side by side,
/// each division being a product and a shift.
inline SixteenBytes DigitsOf(std::uint64_t number) noexcept {
  constexpr std::uint32_t kTenToThe8 = 100'000'000;
  const auto high = static_cast<std::uint32_t>(number / kTenToThe8);
  const auto low = static_cast<std::uint32_t>(number % kTenToThe8);
  const __m128i eights = _mm_set_epi32(0, static_cast<int>(low), 0, static_cast<int>(high));
  const __m128i upperFours =
      _mm_srli_epi64(_mm_mul_epu32(eights, _mm_set1_epi64x(0xD1B71759)), 45);  // / 10000
  const __m128i lowerFours = _mm_sub_epi32(eights, _mm_mul_epu32(upperFours, _mm_set1_epi64x(10000)));
  const __m128i fours = _mm_or_si128(upperFours, _mm_slli_epi64(lowerFours, 32));
  const __m128i upperPairs = _mm_srli_epi16(_mm_mulhi_epu16(fours, _mm_set1_epi16(5243)), 3);  // / 100
  const __m128i lowerPairs = _mm_sub_epi16(fours, _mm_mullo_epi16(upperPairs, _mm_set1_epi16(100)));
  const __m128i pairs = _mm_or_si128(upperPairs, _mm_slli_epi32(lowerPairs, 16));
  const __m128i tens = _mm_srli_epi16(_mm_mullo_epi16(pairs, _mm_set1_epi16(103)), 10);  // / 10
  const __m128i ones = _mm_sub_epi16(pairs, _mm_mullo_epi16(tens, _mm_set1_epi16(10)));
  return _mm_or_si128(tens, _mm_slli_epi16(ones, 8));
}

/// The number that sixteen digits spell: neighbours are joined to pairs, pairs to fours, and so on.
inline std::uint64_t NumberOf(SixteenBytes digits) noexcept {
  const __m128i pairs = _mm_srli_epi16(_mm_mullo_epi16(digits, _mm_set1_epi16(10 << 8 | 1)), 8);
  const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
  const __m128i packed = _mm_packs_epi32(fours, fours);
  const __m128i eights = _mm_madd_epi16(packed, _mm_set1_epi32(1 << 16 | 10000));
  std::uint64_t both;
  std::memcpy(&both, &eights, sizeof both);
  constexpr std::uint64_t kTenToThe8 = 100'000'000;
  return (both & 0xFFFFFFFF) * kTenToThe8 + (both >> 32);
}

/// Writes sixteen characters.
inline void WriteBytes(SixteenBytes bytes, char16_t* out) noexcept {
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8), _mm_unpackhi_epi8(bytes, zero));
}

#endif

}  // namespace vorquill21
