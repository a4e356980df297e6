#include "vorquill21/numeric/elementary_accurate.hpp"

#include <bit>
#include <cmath>
#include <cstddef>

#include "vorquill21/numeric/elementary_tables.hpp"
#include "vorquill21/numeric/wide_fixed.hpp"

namespace vorquill21 {
namespace {

constexpr int kWordBits = 64;
constexpr WideFixed kOne{{0, 0, 0, 1}};

// --- Angles ----------------------------------------------------------------------------------------------

/// first, first + 2, ...: the sum over them of (-1)^k * square^k / n!, up to the last factorial stored.
WideFixed AlternatingSeries(std::size_t first, const WideFixed& square) {
  std::size_t n = kInverseFactorials.size() - 2 + first;
  WideFixed sum = kInverseFactorials[n];
  while (n > first) {
    n -= 2;
    sum = kInverseFactorials[n] - square * sum;
  }
  return sum;
}

struct WideSineCosine {
  WideFixed sine;
  WideFixed cosine;
};

/// For angles up to pi/4.
WideSineCosine WideSineAndCosine(const WideFixed& angle) {
  const WideFixed square = angle * angle;
  return {angle * AlternatingSeries(1, square), AlternatingSeries(0, square)};
}

/// 2/pi * 2^exponent as one word before the point, what lies above being lost, and four behind it; the lowest
/// word comes first.
using TurnWindow = std::array<std::uint64_t, 5>;

TurnWindow TwoOverPiTimesPowerOfTwo(int exponent) {
  const int skipped = exponent >= 0 ? exponent / kWordBits : -((kWordBits - 1 - exponent) / kWordBits);
  const int shift = exponent - skipped * kWordBits;
  const auto word = [](int i) { return i < 0 ? 0 : kTwoOverPi[static_cast<std::size_t>(i)]; };
  TurnWindow window;
  for (int i = 0; i < static_cast<int>(window.size()); ++i) {
    const std::uint64_t low = shift == 0 ? 0 : word(skipped + i) >> (kWordBits - shift);
    window[window.size() - 1 - static_cast<std::size_t>(i)] = word(skipped + i - 1) << shift | low;
  }
  return window;
}

/// magnitude * 2/pi, what is above 2^64 being lost.
WideFixed QuadrantsOf(double magnitude) {
  const DoubleParts parts = PartsOf(magnitude);
  const TurnWindow window = TwoOverPiTimesPowerOfTwo(parts.exponent);
  TurnWindow product;
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < window.size(); ++i) {
    const WideProduct word = Multiply(window[i], parts.significand);
    product[i] = word.low + carry;
    carry = word.high + (product[i] < carry ? 1U : 0U);
  }
  return {{product[1], product[2], product[3], product[4]}};
}

double WithSign(double magnitude, bool negative) {
  return negative ? -magnitude : magnitude;
}

// --- Powers ----------------------------------------------------------------------------------------------

/// significand * 2^exponent with a significand from 1 to 2.
struct WideFloat {
  WideFixed significand;
  std::int64_t exponent;
};

WideFloat Product(const WideFloat& left, const WideFloat& right) {
  const WideFloat product{left.significand * right.significand, left.exponent + right.exponent};
  if (product.significand.Integer() < 2) return product;
  WideFixed halved = ShiftedRight(product.significand, 1);
  halved.words[0] |= product.significand.words[0] & 1;
  return {halved, product.exponent + 1};
}

}  // namespace

SineCosine AccurateSineAndCosine(double radians) {
  WideFixed rest = QuadrantsOf(radians);
  std::uint64_t quadrant = rest.Integer();
  rest.words[WideFixed::kFractionWords] = 0;
  const bool beyondMiddle = rest.words[WideFixed::kFractionWords - 1] >> (kWordBits - 1) != 0;
  if (beyondMiddle) {
    rest = kOne - rest;
    ++quadrant;
  }
  const WideSineCosine wide = WideSineAndCosine(rest * kWideHalfPi);
  const double sine = WithSign(NearestDouble(wide.sine), beyondMiddle);
  const double cosine = NearestDouble(wide.cosine);
  const bool backwards = quadrant & 2;
  const bool negative = std::signbit(radians);
  if (quadrant & 1) return {WithSign(cosine, backwards != negative), WithSign(sine, !backwards)};
  return {WithSign(sine, backwards != negative), WithSign(cosine, backwards)};
}

double AccurateArcTangent(double value, double guess) {
  const double magnitude = std::abs(value);
  const bool steep = magnitude > 1.0;
  // The angle is sought from the nearer axis; its tangent is rise / run.
  const DoubleParts parts = PartsOf(magnitude);
  const int scale = steep ? parts.exponent + 53 : 0;
  const WideFixed larger = steep ? ShiftedRight(WideFrom(magnitude), scale) : kOne;
  const WideFixed smaller = steep ? ShiftedRight(kOne, scale) : WideFrom(magnitude);
  WideFixed angle = steep ? kWideHalfPi - WideFrom(guess) : WideFrom(guess);
  for (int step = 0; step < 2; ++step) {
    const WideSineCosine wide = WideSineAndCosine(angle);
    const WideFixed rise = smaller * wide.cosine;
    const WideFixed run = larger * wide.sine;
    const double along = NearestDouble(larger * wide.cosine + smaller * wide.sine);
    const WideFixed correction = WideFrom(NearestDouble(rise > run ? rise - run : run - rise) / along);
    angle = rise > run ? angle + correction : angle - correction;
  }
  return std::copysign(NearestDouble(steep ? kWideHalfPi - angle : angle), value);
}

double AccuratePower(double base, std::uint32_t exponent) {
  const DoubleParts parts = PartsOf(base);
  constexpr int kStoredBits = 52;
  const WideFloat factor{ShiftedRight({{0, 0, 0, parts.significand}}, kStoredBits),
                         std::int64_t{parts.exponent} + kStoredBits};
  WideFloat power = factor;
  for (std::uint32_t digit = std::bit_floor(exponent) / 2; digit != 0; digit /= 2) {
    power = Product(power, power);
    if (exponent & digit) power = Product(power, factor);
  }
  return NearestDouble(power.significand, power.exponent);
}

}  // namespace vorquill21
