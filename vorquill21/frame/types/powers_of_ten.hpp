#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "vorquill21/frame/types/wide_product.hpp"

namespace vorquill21 {

inline constexpr int kLeastPowerOfTen = -342;
inline constexpr int kGreatestPowerOfTen = 324;

inline constexpr std::size_t kPowersOfTen = kGreatestPowerOfTen - kLeastPowerOfTen + 1;

/// The 128 leading bits of the powers of ten, the least one first, cut off (not rounded) after the last bit;
/// the first bit is always 1. 10 to the power of e lies between these bits and one more, times 2 to the power
/// of FloorLog2OfPowerOfTen(e) - 127.
struct PowersOfTen {
  std::array<std::uint64_t, kPowersOfTen> high{};
  std::array<std::uint64_t, kPowersOfTen> low{};
};
extern const PowersOfTen kLeadingBits;

/// The leading bits of 10 to the power of `exponent`.
inline WideProduct LeadingBitsOfPowerOfTen(int exponent) noexcept {
  const auto i = static_cast<std::size_t>(exponent - kLeastPowerOfTen);
  return {kLeadingBits.high[i], kLeadingBits.low[i]};
}

/// The greatest integer not above log2(10 ^ exponent), for exponents from -1200 to 1200.
constexpr int FloorLog2OfPowerOfTen(int exponent) noexcept {
  return (exponent * 1741647) >> 19;
}

/// The greatest integer not above log10(2 ^ exponent), for exponents from -2600 to 2600.
constexpr int FloorLog10OfPowerOfTwo(int exponent) noexcept {
  return (exponent * 315653) >> 20;
}

}  // namespace vorquill21
