#pragma once

#include <cstdint>

namespace vorquill21 {

/// 128 bits as two halves.
struct WideProduct {
  std::uint64_t high;
  std::uint64_t low;
};

/// left * right, all 128 bits of it.
constexpr WideProduct Multiply(std::uint64_t left, std::uint64_t right) noexcept {
#if defined(__SIZEOF_INT128__)
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(left) * right;
  return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
#else
  constexpr std::uint64_t kHalf = 0xFFFFFFFF;
  const std::uint64_t lowLow = (left & kHalf) * (right & kHalf);
  const std::uint64_t lowHigh = (left & kHalf) * (right >> 32);
  const std::uint64_t highLow = (left >> 32) * (right & kHalf);
  const std::uint64_t middle = (lowLow >> 32) + (lowHigh & kHalf) + (highLow & kHalf);
  const std::uint64_t high =
      (left >> 32) * (right >> 32) + (lowHigh >> 32) + (highLow >> 32) + (middle >> 32);
  return {high, middle << 32 | (lowLow & kHalf)};
#endif
}

}  // namespace vorquill21
