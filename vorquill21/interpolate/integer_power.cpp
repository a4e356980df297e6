#include "vorquill21/interpolate/integer_power.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "vorquill21/frame/types/wide_product.hpp"
#include "vorquill21/numeric/double_double.hpp"

namespace vorquill21 {
namespace {

constexpr int kPrecision = 53;
constexpr int kLeastExponent = -1022;  // of a normal number
constexpr int kGreatestExponent = 1023;

// --- In double-doubles -----------------------------------------------------------------------------------

/// significand * 2^exponent, with 0.5 <= |significand| < 1, so that no power is out of range on the way.
struct WideRange {
  DoubleDouble significand;
  std::int64_t exponent;
};

WideRange Normal(DoubleDouble value, std::int64_t exponent) {
  int shift = 0;
  const double high = std::frexp(value.high, &shift);
  return {{high, std::ldexp(value.low, -shift)}, exponent + shift};
}

WideRange Times(const WideRange& left, const WideRange& right) {
  return Normal(Product<false>(left.significand, right.significand), left.exponent + right.exponent);
}

WideRange PowerInWideRange(double base, std::int32_t exponent) {
  WideRange power = Normal({1.0, 0.0}, 0);
  WideRange square = Normal({base, 0.0}, 0);
  for (std::int32_t rest = exponent; rest != 0; rest /= 2) {
    if (rest % 2 != 0) power = Times(power, square);
    square = Times(square, square);
  }
  return power;
}

// --- All digits ------------------------------------------------------------------------------------------

/// Words of an integer, the least significant one first; the last one is not 0.
using Words = std::vector<std::uint64_t>;

void MultiplyBy(Words& words, std::uint64_t factor) {
  std::uint64_t carry = 0;
  for (std::uint64_t& word : words) {
    const WideProduct product = Multiply(word, factor);
    word = product.low + carry;
    carry = product.high + (word < carry ? 1 : 0);
  }
  if (carry != 0) words.push_back(carry);
}

std::int64_t BitCount(const Words& words) {
  return static_cast<std::int64_t>(words.size()) * 64 - std::countl_zero(words.back());
}

bool BitOf(const Words& words, std::int64_t position) {
  return (words[static_cast<std::size_t>(position / 64)] >> (position % 64) & 1) != 0;
}

bool AnyBitBelow(const Words& words, std::int64_t position) {
  for (std::int64_t i = 0; i < position; ++i) {
    if (BitOf(words, i)) return true;
  }
  return false;
}

/// words / 2^dropped, rounded to the nearest integer, a half to the even one; less than 2^64.
std::uint64_t RoundedQuotient(const Words& words, std::int64_t dropped) {
  std::uint64_t kept = 0;
  for (std::int64_t i = BitCount(words); i-- > dropped;) kept = kept << 1 | (BitOf(words, i) ? 1 : 0);
  if (dropped == 0 || !BitOf(words, dropped - 1)) return kept;
  const bool isMoreThanHalf = AnyBitBelow(words, dropped - 1);
  return kept + (isMoreThanHalf ? 1 : kept & 1);
}

/// The double nearest to words * 2^exponent, which is below 2^1024.
double Nearest(const Words& words, std::int64_t exponent) {
  const std::int64_t bits = BitCount(words);
  const std::int64_t leading = bits - 1 + exponent;
  const std::int64_t precision = kPrecision - std::max<std::int64_t>(0, kLeastExponent - leading);
  if (precision < 0) return 0.0;
  const std::int64_t dropped = std::max<std::int64_t>(0, bits - precision);
  const auto significand = static_cast<double>(RoundedQuotient(words, dropped));
  return std::ldexp(significand, static_cast<int>(exponent + dropped));
}

double NearestByAllDigits(double base, std::int32_t exponent) {
  int baseExponent = 0;
  const double fraction = std::frexp(std::abs(base), &baseExponent);
  auto integer = static_cast<std::uint64_t>(std::ldexp(fraction, kPrecision));
  const int zeros = std::countr_zero(integer);
  integer >>= zeros;
  Words power{1};
  for (std::int32_t i = 0; i < exponent; ++i) MultiplyBy(power, integer);
  const double nearest = Nearest(power, std::int64_t{baseExponent - kPrecision + zeros} * exponent);
  return base < 0.0 && exponent % 2 != 0 ? -nearest : nearest;
}

}  // namespace

double NearestPower(double base, std::int32_t exponent) {
  if (base == 0.0 || !std::isfinite(base)) return std::pow(base, exponent);
  const WideRange power = PowerInWideRange(base, exponent);
  const double high = power.significand.high;
  // The significand begins behind the point.
  if (power.exponent > kGreatestExponent + 2)
    return std::copysign(std::numeric_limits<double>::infinity(), high);
  constexpr std::int64_t kNothing = kLeastExponent - kPrecision - 2;
  if (power.exponent < kNothing) return std::copysign(0.0, high);
  const bool isNormal = power.exponent - 1 > kLeastExponent;
  if (isNormal && RoundingDoubt(high, power.significand.low, exponent) == 0) {
    return std::ldexp(high, static_cast<int>(power.exponent));
  }
  return NearestByAllDigits(base, exponent);
}

}  // namespace vorquill21
