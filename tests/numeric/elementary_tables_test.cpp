#include "vorquill21/numeric/elementary_tables.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

// The tables beside an evaluation that takes nothing from them: pi by Machin's formula, sine and cosine by
// series, each term from the one before it.

namespace vorquill21 {
namespace {

constexpr WideFixed kOne{{0, 0, 0, 1}};

/// value / divisor, the rest left out; for divisors below 2^32.
WideFixed Quotient(const WideFixed& value, std::uint64_t divisor) {
  WideFixed quotient;
  std::uint64_t rest = 0;
  for (std::size_t i = WideFixed::kWords; i-- > 0;) {
    const std::uint64_t high = rest << 32 | value.words[i] >> 32;
    const std::uint64_t low = high % divisor << 32 | (value.words[i] & 0xFFFFFFFF);
    quotient.words[i] = high / divisor << 32 | low / divisor;
    rest = low % divisor;
  }
  return quotient;
}

WideFixed Times(std::uint64_t factor, const WideFixed& value) {
  return WideFixed{{0, 0, 0, factor}} * value;
}

WideFixed ArcTangentOfInverse(std::uint64_t n) {
  WideFixed positive;
  WideFixed negative;
  WideFixed power = Quotient(kOne, n);
  for (std::uint64_t k = 1; power != WideFixed{}; k += 2) {
    WideFixed& sum = k % 4 == 1 ? positive : negative;
    sum = sum + Quotient(power, k);
    power = Quotient(power, n * n);
  }
  return positive - negative;
}

WideFixed HalfPi() {
  return Times(8, ArcTangentOfInverse(5)) - Times(2, ArcTangentOfInverse(239));
}

struct WideSineCosine {
  WideFixed sine;
  WideFixed cosine;
};

/// For angles up to pi/2.
WideSineCosine SineAndCosineBySeries(const WideFixed& angle) {
  WideFixed sums[4];
  WideFixed term = kOne;
  for (std::uint64_t n = 0; n < 60; ++n) {
    sums[n % 4] = sums[n % 4] + term;
    term = Quotient(term * angle, n + 1);
  }
  return {sums[1] - sums[3], sums[0] - std::min(sums[0], sums[2])};
}

double Distance(const WideFixed& left, const WideFixed& right) {
  return NearestDouble(left > right ? left - right : right - left);
}

/// head + tail, which may be of either sign.
WideFixed Sum(double head, double tail) {
  return tail < 0.0 ? WideFrom(head) - WideFrom(tail) : WideFrom(head) + WideFrom(tail);
}

bool IsMultiple(double value, double unit) {
  return value / unit == std::trunc(value / unit);
}

TEST(ElementaryTablesTest, HalfPiHasTheKnownDigits) {
  constexpr WideFixed kPi{{0xA4093822299F31D0, 0x13198A2E03707344, 0x243F6A8885A308D3, 3}};
  EXPECT_LT(Distance(Times(2, kWideHalfPi), kPi), 0x1p-190);
}

TEST(ElementaryTablesTest, HalfPiIsThatOfTheFormula) {
  EXPECT_LT(Distance(kWideHalfPi, HalfPi()), 0x1p-184);
}

TEST(ElementaryTablesTest, TwoOverPiIsTheInverseOfHalfPi) {
  const WideFixed leading{{kTwoOverPi[2], kTwoOverPi[1], kTwoOverPi[0], 0}};
  EXPECT_LT(Distance(leading * HalfPi(), kOne), 0x1p-184);
}

TEST(ElementaryTablesTest, InverseFactorialsFollowFromOneAnother) {
  WideFixed expected = kOne;
  for (std::size_t n = 0; n < kInverseFactorials.size(); ++n) {
    if (n > 1) expected = Quotient(expected, n);
    EXPECT_LT(Distance(kInverseFactorials[n], expected), 0x1p-190) << n;
  }
}

TEST(ElementaryTablesTest, PartsOfAStepAddUpAndHaveFewBits) {
  const WideFixed step = Quotient(HalfPi(), kStepsPerHalfTurn / 2);
  const WideFixed sum =
      WideFrom(kStepPart1) + WideFrom(kStepPart2) + WideFrom(kStepPart3) + WideFrom(kStepPart4);
  EXPECT_LT(Distance(sum, step), 0x1p-150);
  for (const double part : {kStepPart1, kStepPart2, kStepPart3}) {
    EXPECT_TRUE(IsMultiple(part, std::ldexp(1.0, std::ilogb(part) - 29)));
  }
  EXPECT_LT(Distance(WideFrom(kStepsPerRadian) * step, kOne), 0x1p-53);
}

TEST(ElementaryTablesTest, TurnNodesAreSinesAndCosines) {
  ASSERT_EQ(kTurnNodes.size(), std::size_t{kStepsPerHalfTurn});
  const WideFixed step = Quotient(HalfPi(), kStepsPerHalfTurn / 2);
  for (std::size_t k = 0; k < kTurnNodes.size(); ++k) {
    SCOPED_TRACE(k);
    const TurnNode& node = kTurnNodes[k];
    const bool obtuse = 2 * k > kTurnNodes.size();
    const WideSineCosine expected = SineAndCosineBySeries(Times(obtuse ? kTurnNodes.size() - k : k, step));
    const double sign = obtuse ? -1.0 : 1.0;
    EXPECT_LT(Distance(Sum(node.sineHead, node.sineTail), expected.sine), 0x1p-76);
    EXPECT_LT(Distance(Sum(sign * node.cosineHead, sign * node.cosineTail), expected.cosine), 0x1p-76);
    EXPECT_TRUE(IsMultiple(node.sineHead, 0x1p-22));
    EXPECT_TRUE(IsMultiple(node.cosineHead, 0x1p-22));
  }
}

TEST(ElementaryTablesTest, ArcNodesAreAnglesAndTheirTangents) {
  for (const ArcNode& node : kArcNodes) {
    SCOPED_TRACE(node.crossing);
    const WideSineCosine angle = SineAndCosineBySeries(Sum(node.angleHead, node.angleTail));
    const WideFixed rise = WideFrom(node.along) * angle.sine;
    const WideFixed run = WideFrom(node.crossing) * angle.cosine;
    EXPECT_LT(Distance(rise, run), 0x1p-103 * (node.along + node.crossing));
    EXPECT_TRUE(IsMultiple(node.angleHead, 0x1p-50));
  }
}

TEST(ElementaryTablesTest, ArcNodesStandInTheMiddleOfTheirParts) {
  for (std::size_t i = 0; i + 1 < kArcNodes.size(); ++i) {
    const auto part = static_cast<int>(i);
    const double start = std::ldexp(kArcNodesPerBinade + part % kArcNodesPerBinade,
                                    kArcLeastExponent + part / kArcNodesPerBinade);
    const double width = std::ldexp(1.0, kArcLeastExponent + part / kArcNodesPerBinade);
    EXPECT_EQ(kArcNodes[i].crossing * kArcNodesPerBinade, start + width / 2) << i;
    EXPECT_EQ(kArcNodes[i].along, 1.0) << i;
  }
  EXPECT_EQ(kArcNodes.back().along, 0.0);
  EXPECT_EQ(kArcNodes.back().crossing, 1.0);
}

}  // namespace
}  // namespace vorquill21
