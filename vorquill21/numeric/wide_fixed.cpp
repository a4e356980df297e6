#include "vorquill21/numeric/wide_fixed.hpp"

#include <bit>
#include <limits>

namespace vorquill21 {
namespace {

constexpr int kWordBits = 64;
constexpr int kStoredBits = 52;
constexpr int kExponentBias = 1023;
constexpr std::int64_t kLeastNormalExponent = -1022;

WideProduct Add(const WideProduct& product, std::uint64_t word) {
  const std::uint64_t low = product.low + word;
  return {product.high + (low < word ? 1U : 0U), low};
}

/// The leading 64 bits of a number that is not zero, the first of them set and worth 2^exponent, and whether
/// there are others behind them.
struct Leading {
  std::uint64_t bits;
  std::int64_t exponent;
  bool more;
};

Leading LeadingOf(const WideFixed& value) {
  std::size_t top = WideFixed::kWords - 1;
  while (value.words[top] == 0) --top;
  const int zeros = std::countl_zero(value.words[top]);
  Leading leading{value.words[top] << zeros, 0, false};
  leading.exponent = kWordBits * (static_cast<int>(top) - static_cast<int>(WideFixed::kFractionWords)) +
                     kWordBits - 1 - zeros;
  if (top == 0) return leading;
  const std::uint64_t next = value.words[top - 1];
  if (zeros > 0) leading.bits |= next >> (kWordBits - zeros);
  leading.more = next << zeros != 0;
  for (std::size_t i = 0; i + 1 < top; ++i) leading.more |= value.words[i] != 0;
  return leading;
}

/// leading.bits / 2^dropped as an integer, to nearest.
std::uint64_t NearestInteger(const Leading& leading, int dropped) {
  const std::uint64_t kept = dropped < kWordBits ? leading.bits >> dropped : 0;
  const std::uint64_t rest = leading.bits << (kWordBits - dropped);
  constexpr std::uint64_t kHalf = std::uint64_t{1} << (kWordBits - 1);
  const bool up = rest > kHalf || (rest == kHalf && (leading.more || kept % 2 == 1));
  return kept + (up ? 1U : 0U);
}

}  // namespace

WideFixed operator+(const WideFixed& left, const WideFixed& right) {
  WideFixed sum;
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < WideFixed::kWords; ++i) {
    const WideProduct word = Add(Add({0, left.words[i]}, right.words[i]), carry);
    sum.words[i] = word.low;
    carry = word.high;
  }
  return sum;
}

WideFixed operator-(const WideFixed& left, const WideFixed& right) {
  WideFixed difference;
  std::uint64_t borrow = 0;
  for (std::size_t i = 0; i < WideFixed::kWords; ++i) {
    const std::uint64_t word = left.words[i] - right.words[i];
    difference.words[i] = word - borrow;
    borrow = (left.words[i] < right.words[i] || word < borrow) ? 1 : 0;
  }
  return difference;
}

WideFixed operator*(const WideFixed& left, const WideFixed& right) {
  std::array<std::uint64_t, 2 * WideFixed::kWords> words{};
  for (std::size_t i = 0; i < WideFixed::kWords; ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < WideFixed::kWords; ++j) {
      const WideProduct word = Add(Add(Multiply(left.words[i], right.words[j]), words[i + j]), carry);
      words[i + j] = word.low;
      carry = word.high;
    }
    words[i + WideFixed::kWords] = carry;
  }
  WideFixed product;
  for (std::size_t i = 0; i < WideFixed::kWords; ++i) {
    product.words[i] = words[i + WideFixed::kFractionWords];
  }
  std::uint64_t leftOut = 0;
  for (std::size_t i = 0; i < WideFixed::kFractionWords; ++i) leftOut |= words[i];
  product.words[0] |= leftOut != 0 ? 1U : 0U;
  return product;
}

WideFixed ShiftedRight(const WideFixed& value, int bits) {
  const auto skipped = static_cast<std::size_t>(bits / kWordBits);
  const int shift = bits % kWordBits;
  WideFixed shifted;
  for (std::size_t i = skipped; i < WideFixed::kWords; ++i) {
    const std::uint64_t above = i + 1 < WideFixed::kWords ? value.words[i + 1] : 0;
    shifted.words[i - skipped] =
        shift == 0 ? value.words[i] : value.words[i] >> shift | above << (kWordBits - shift);
  }
  return shifted;
}

DoubleParts PartsOf(double value) {
  constexpr std::uint64_t kHidden = std::uint64_t{1} << kStoredBits;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t stored = bits & (kHidden - 1);
  const int exponent = static_cast<int>(bits >> kStoredBits & 0x7FF);
  constexpr int kOfUnit = kExponentBias + kStoredBits;
  if (exponent > 0) return {stored | kHidden, exponent - kOfUnit};
  if (stored == 0) return {0, 0};
  const int shift = std::countl_zero(stored) - (kWordBits - 1 - kStoredBits);
  return {stored << shift, 1 - shift - kOfUnit};
}

WideFixed WideFrom(double value) {
  const DoubleParts parts = PartsOf(value);
  WideFixed wide;
  wide.words[WideFixed::kFractionWords] = parts.significand << (kWordBits - 1 - kStoredBits);
  return ShiftedRight(wide, kWordBits - 1 - kStoredBits - parts.exponent);
}

double NearestDouble(const WideFixed& value, std::int64_t exponent) {
  if (value == WideFixed{}) return 0.0;
  const Leading leading = LeadingOf(value);
  const std::int64_t weight = leading.exponent + exponent;
  if (weight > kExponentBias) return std::numeric_limits<double>::infinity();
  constexpr int kSuperfluous = kWordBits - 1 - kStoredBits;
  if (weight >= kLeastNormalExponent) {
    // The significand's highest bit adds one to the exponent, and so does a carry out of it.
    const auto biased = static_cast<std::uint64_t>(weight - kLeastNormalExponent);
    return std::bit_cast<double>((biased << kStoredBits) + NearestInteger(leading, kSuperfluous));
  }
  const std::int64_t dropped = kSuperfluous + (kLeastNormalExponent - weight);
  if (dropped > kWordBits) return 0.0;
  return std::bit_cast<double>(NearestInteger(leading, static_cast<int>(dropped)));
}

}  // namespace vorquill21
