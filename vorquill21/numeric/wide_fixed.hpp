#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>

/// Fixed-point numbers of 256 bits, for what must be known to far more bits than a double has. All of it is
/// integer arithmetic, so that every system has the same bits. Not part of the interface.
namespace vorquill21 {

struct WideProduct {
  std::uint64_t high;
  std::uint64_t low;
};

/// left * right, put together from products of halves.
constexpr WideProduct MultiplyByHalves(std::uint64_t left, std::uint64_t right) {
  constexpr std::uint64_t kHalf = 0xFFFFFFFF;
  const std::uint64_t low = (left & kHalf) * (right & kHalf);
  const std::uint64_t middle = (left >> 32) * (right & kHalf) + (low >> 32);
  const std::uint64_t otherMiddle = (left & kHalf) * (right >> 32) + (middle & kHalf);
  return {(left >> 32) * (right >> 32) + (middle >> 32) + (otherMiddle >> 32),
          otherMiddle << 32 | (low & kHalf)};
}

/// left * right.
constexpr WideProduct Multiply(std::uint64_t left, std::uint64_t right) {
#ifdef __SIZEOF_INT128__
  const unsigned __int128 product = static_cast<unsigned __int128>(left) * right;
  return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
#else
  return MultiplyByHalves(left, right);
#endif
}

/// Sum over i of words[i] * 2^(64 * (i - 3)): 64 bits before the point, 192 behind it, no sign. What goes
/// beyond is lost.
struct WideFixed {
  static constexpr std::size_t kWords = 4;
  static constexpr std::size_t kFractionWords = 3;

  std::array<std::uint64_t, kWords> words{};

  constexpr std::uint64_t Integer() const { return words[kFractionWords]; }

  friend constexpr bool operator==(const WideFixed&, const WideFixed&) = default;
  friend constexpr std::strong_ordering operator<=>(const WideFixed& left, const WideFixed& right) {
    for (std::size_t i = kWords; i-- > 0;) {
      if (left.words[i] != right.words[i]) return left.words[i] <=> right.words[i];
    }
    return std::strong_ordering::equal;
  }
};

WideFixed operator+(const WideFixed& left, const WideFixed& right);

/// For left >= right.
WideFixed operator-(const WideFixed& left, const WideFixed& right);

/// The product with its last bit set when bits behind it are left out, so that no rounding of it can take an
/// inexact product for an exact one. Off by less than 2^-192.
WideFixed operator*(const WideFixed& left, const WideFixed& right);

/// value / 2^bits, for any bits >= 0; what is shifted out is left out.
WideFixed ShiftedRight(const WideFixed& value, int bits);

/// A finite double's magnitude is significand * 2^exponent; the significand of other doubles than zeros has
/// its highest bit in bit 52.
struct DoubleParts {
  std::uint64_t significand;
  int exponent;
};
DoubleParts PartsOf(double value);

/// The magnitude of a double below 2^64 in magnitude; what is below 2^-192 is left out.
WideFixed WideFrom(double value);

/// The double that is nearest to value * 2^exponent, of two the one with an even significand; gradual below
/// the normal doubles, infinite beyond the largest.
double NearestDouble(const WideFixed& value, std::int64_t exponent = 0);

}  // namespace vorquill21
