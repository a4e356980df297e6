#pragma once

#include <bit>
#include <cstdint>

#include "vorquill21/frame/types/powers_of_ten.hpp"

namespace vorquill21 {

/// The 53 leading bits (one more where rounding carries) of `digits` * 10 ^ `exponent`, rounded to the
/// nearest, a half to the even one, with 128 bits of the power of ten; 0 when those leave it open. `digits`
/// is not 0.
std::uint64_t RoundedWith128Bits(std::uint64_t digits, int exponent) noexcept;

/// Sets `value` to the double nearest to `digits` * 10 ^ `exponent`, a half to the even one, when it is sure;
/// otherwise false. Sure is nearly everything within the range of normal numbers.
///
/// The digits are multiplied by the leading bits of the power of ten (D. Lemire, "Number Parsing at a
/// Gigabyte per Second", 2021). 64 of them, cut off, make the upper half of the product too small by less
/// than three; only where the bits behind the 53rd are closer to one half than that, more of them are needed.
inline bool NearestDouble(std::uint64_t digits, std::int64_t exponent, double& value) noexcept {
  if (exponent < kLeastPowerOfTen || exponent > kGreatestPowerOfTen) return false;
  const auto powerOfTen = static_cast<int>(exponent);
  const int zeros = std::countl_zero(digits | 1);
  const WideProduct product = Multiply(digits << zeros, LeadingBitsOfPowerOfTen(powerOfTen).high);
  const auto shift = static_cast<int>(product.high >> 63 ^ 1);
  const std::uint64_t leading = product.high << shift | (product.low >> 63 & static_cast<unsigned>(shift));

  constexpr int kDroppedBits = 64 - 53;
  constexpr std::uint64_t kHalf = std::uint64_t{1} << (kDroppedBits - 1);
  std::uint64_t rounded = ((leading >> (kDroppedBits - 1)) + 1) >> 1;
  if ((leading & (2 * kHalf - 1)) - (kHalf - 2) <= 2) [[unlikely]] {
    rounded = RoundedWith128Bits(digits, powerOfTen);
    if (rounded == 0) return false;
  }

  // The first of the 53 bits adds one to the exponent below; so does a carry beyond it.
  constexpr int kBias = 1023;
  const int exponentOfTwo = FloorLog2OfPowerOfTen(powerOfTen) + 64 - zeros - shift;
  const int biased = exponentOfTwo + kBias - 1;
  constexpr int kGreatestBiased = 2 * kBias - 2;
  if (biased < 0 || biased > kGreatestBiased) return false;
  const std::uint64_t bits = (static_cast<std::uint64_t>(biased) << 52) + rounded;
  value = std::bit_cast<double>(digits == 0 ? 0 : bits);
  return true;
}

}  // namespace vorquill21
