#include "vorquill21/frame/types/nearest_double.hpp"

#include <bit>
#include <limits>

namespace vorquill21 {

std::uint64_t RoundedWith128Bits(std::uint64_t digits, int exponent) noexcept {
  const std::uint64_t significand = digits << std::countl_zero(digits);
  const WideProduct power = LeadingBitsOfPowerOfTen(exponent);
  WideProduct product = Multiply(significand, power.high);
  const std::uint64_t carried = Multiply(significand, power.low).high;
  product.low += carried;
  product.high += product.low < carried ? 1 : 0;

  const int droppedBits = 64 - 54 + static_cast<int>(product.high >> 63);
  const std::uint64_t half = std::uint64_t{1} << (droppedBits - 1);
  const std::uint64_t dropped = product.high & (2 * half - 1);
  const std::uint64_t kept = product.high >> droppedBits;

  constexpr int kGreatestPowerIn64Bits = 27;
  if (exponent >= 0 && exponent <= kGreatestPowerIn64Bits) {
    const bool isHalf = dropped == half && product.low == 0;
    return kept + (isHalf ? kept & 1 : dropped / half);
  }
  // What is cut off makes the product too small by less than two.
  constexpr std::uint64_t kNearlyOne = std::numeric_limits<std::uint64_t>::max() - 1;
  const bool mayReachHalf = dropped == half - 1 && product.low >= kNearlyOne;
  const bool mayBeHalf = dropped == half && product.low == 0;
  return mayReachHalf || mayBeHalf ? 0 : kept + dropped / half;
}

}  // namespace vorquill21
