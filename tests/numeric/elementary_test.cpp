#include "vorquill21/numeric/elementary.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "tests/numeric/elementary_cases.hpp"
#include "vorquill21/numeric/elementary_accurate.hpp"

namespace vorquill21 {
namespace {

using test::ElementaryCase;
using test::kElementaryCases;
using test::kInfinity;
using test::kPowerCases;
using test::PowerCase;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();
constexpr double kHalfPi = 0x1.921fb54442d18p+0;

#ifdef NDEBUG
constexpr int kRandomArguments = 1'000'000;
#else
constexpr int kRandomArguments = 20'000;
#endif

std::uint64_t Bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

/// How many doubles lie between two of the same sign, the farther one included.
std::uint64_t Steps(double left, double right) {
  return Bits(left) > Bits(right) ? Bits(left) - Bits(right) : Bits(right) - Bits(left);
}

/// Calls `check` with random doubles of either sign, the exponents of which are spread evenly.
template <typename Check>
void ForRandomArguments(int leastExponent, int endExponent, const Check& check) {
  std::mt19937_64 random(21);
  for (int i = 0; i < kRandomArguments && !testing::Test::HasFailure(); ++i) {
    const auto exponents = static_cast<std::uint64_t>(endExponent - leastExponent);
    const std::uint64_t exponent = static_cast<std::uint64_t>(leastExponent + 1023) + random() % exponents;
    check(std::bit_cast<double>((random() & 0x800F'FFFF'FFFF'FFFF) | exponent << 52));
  }
}

// --- Nearest doubles -------------------------------------------------------------------------------------

TEST(ElementaryTest, SineIsTheNearestDouble) {
  for (const ElementaryCase& each : kElementaryCases) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << each.argument);
    EXPECT_EQ(Bits(Sine(each.argument)), Bits(each.sine));
    EXPECT_EQ(Bits(Sine(-each.argument)), Bits(-each.sine));
  }
}

TEST(ElementaryTest, CosineIsTheNearestDouble) {
  for (const ElementaryCase& each : kElementaryCases) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << each.argument);
    EXPECT_EQ(Bits(Cosine(each.argument)), Bits(each.cosine));
    EXPECT_EQ(Bits(Cosine(-each.argument)), Bits(each.cosine));
  }
}

TEST(ElementaryTest, SineAndCosineAreTheNearestDoubles) {
  for (const ElementaryCase& each : kElementaryCases) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << each.argument);
    EXPECT_EQ(Bits(SineAndCosine(each.argument).sine), Bits(each.sine));
    EXPECT_EQ(Bits(SineAndCosine(each.argument).cosine), Bits(each.cosine));
  }
}

TEST(ElementaryTest, ArcTangentIsTheNearestDouble) {
  for (const ElementaryCase& each : kElementaryCases) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << each.argument);
    EXPECT_EQ(Bits(ArcTangent(each.argument)), Bits(each.arcTangent));
    EXPECT_EQ(Bits(ArcTangent(-each.argument)), Bits(-each.arcTangent));
  }
}

TEST(ElementaryTest, IntegerPowerIsTheNearestDouble) {
  for (const PowerCase& each : kPowerCases) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << each.base << " ^ " << each.exponent);
    EXPECT_EQ(Bits(IntegerPower(each.base, each.exponent)), Bits(each.power));
  }
}

TEST(ElementaryTest, AccurateFunctionsGiveTheNearestDoubles) {
  for (const ElementaryCase& each : kElementaryCases) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << each.argument);
    if (each.argument < 0x1p-28) continue;
    EXPECT_EQ(Bits(AccurateSineAndCosine(each.argument).sine), Bits(each.sine));
    EXPECT_EQ(Bits(AccurateSineAndCosine(-each.argument).cosine), Bits(each.cosine));
    if (each.argument > 0x1p53) continue;
    for (const double error : {-0x1p-41, 0.0, 0x1p-41}) {
      const double guess = std::fmin(each.arcTangent * (1.0 + error), kHalfPi);
      EXPECT_EQ(Bits(AccurateArcTangent(each.argument, guess)), Bits(each.arcTangent));
    }
  }
  for (const PowerCase& each : kPowerCases) {
    SCOPED_TRACE(testing::Message() << std::hexfloat << each.base << " ^ " << each.exponent);
    EXPECT_EQ(Bits(AccuratePower(std::abs(each.base), each.exponent)), Bits(std::abs(each.power)));
  }
}

// --- The two phases --------------------------------------------------------------------------------------

TEST(ElementaryTest, FastAndAccurateSineAndCosineAgree) {
  ForRandomArguments(-28, 16, [](double radians) {
    const SineCosine fast = SineAndCosine(radians);
    const SineCosine accurate = AccurateSineAndCosine(radians);
    EXPECT_EQ(Bits(fast.sine), Bits(accurate.sine)) << std::hexfloat << radians;
    EXPECT_EQ(Bits(fast.cosine), Bits(accurate.cosine)) << std::hexfloat << radians;
  });
}

TEST(ElementaryTest, FastAndAccurateArcTangentAgree) {
  ForRandomArguments(-28, 53, [](double value) {
    const double fast = ArcTangent(value);
    EXPECT_EQ(Bits(fast), Bits(AccurateArcTangent(value, std::abs(fast)))) << std::hexfloat << value;
  });
}

TEST(ElementaryTest, FastAndAccuratePowerAgree) {
  std::mt19937 random(21);
  ForRandomArguments(-30, 30, [&random](double base) {
    const auto exponent = static_cast<std::uint32_t>(1 + random() % 40);
    EXPECT_EQ(Bits(std::abs(IntegerPower(base, exponent))), Bits(AccuratePower(std::abs(base), exponent)))
        << std::hexfloat << base << " ^ " << exponent;
  });
}

TEST(ElementaryTest, FastAndAccuratePowerAgreeWhereTheExponentIsLarge) {
  constexpr double kLargestLogarithm = 1000.0;
  std::mt19937_64 random(22);
  for (int i = 0; i < kRandomArguments / 100 && !HasFailure(); ++i) {
    const double distance = std::ldexp(1.0 + static_cast<double>(random() >> 12) * 0x1p-52, -1 - i % 30);
    const double base = i % 2 == 0 ? 1.0 + distance : 1.0 - distance / 2.0;
    const double greatest = std::fmin(kLargestLogarithm / std::abs(std::log2(base)), 0x1p32 - 1.0);
    const auto exponent =
        static_cast<std::uint32_t>(greatest * static_cast<double>(random() >> 12) * 0x1p-52) + 1;
    EXPECT_EQ(Bits(IntegerPower(base, exponent)), Bits(AccuratePower(base, exponent)))
        << std::hexfloat << base << " ^ " << exponent;
  }
}

// --- Beside the system's library -------------------------------------------------------------------------

TEST(ElementaryTest, TheSystemsFunctionsAreAtMostOneDoubleAway) {
  ForRandomArguments(-40, 0, [](double argument) {
    EXPECT_LE(Steps(Sine(argument), std::sin(argument)), 1U) << std::hexfloat << argument;
    EXPECT_LE(Steps(Cosine(argument), std::cos(argument)), 1U) << std::hexfloat << argument;
    EXPECT_LE(Steps(ArcTangent(argument), std::atan(argument)), 1U) << std::hexfloat << argument;
    EXPECT_LE(Steps(ArcTangent(1.0 / argument), std::atan(1.0 / argument)), 1U) << std::hexfloat << argument;
  });
}

// --- Symmetry --------------------------------------------------------------------------------------------

TEST(ElementaryTest, SineAndArcTangentAreOddAndCosineIsEven) {
  ForRandomArguments(-60, 16, [](double argument) {
    EXPECT_EQ(Bits(Sine(-argument)), Bits(-Sine(argument))) << std::hexfloat << argument;
    EXPECT_EQ(Bits(Cosine(-argument)), Bits(Cosine(argument))) << std::hexfloat << argument;
    EXPECT_EQ(Bits(ArcTangent(-argument)), Bits(-ArcTangent(argument))) << std::hexfloat << argument;
  });
}

TEST(ElementaryTest, BothAtOnceAreWhatEachIs) {
  ForRandomArguments(-60, 16, [](double radians) {
    const SineCosine both = SineAndCosine(radians);
    EXPECT_EQ(Bits(both.sine), Bits(Sine(radians))) << std::hexfloat << radians;
    EXPECT_EQ(Bits(both.cosine), Bits(Cosine(radians))) << std::hexfloat << radians;
  });
}

// --- Ends of the range -----------------------------------------------------------------------------------

TEST(ElementaryTest, ZerosKeepTheirSigns) {
  EXPECT_EQ(Bits(Sine(0.0)), Bits(0.0));
  EXPECT_EQ(Bits(Sine(-0.0)), Bits(-0.0));
  EXPECT_EQ(Bits(Cosine(-0.0)), Bits(1.0));
  EXPECT_EQ(Bits(ArcTangent(0.0)), Bits(0.0));
  EXPECT_EQ(Bits(ArcTangent(-0.0)), Bits(-0.0));
}

TEST(ElementaryTest, TheLeastDoublesAreTheirOwnSinesAndArcTangents) {
  for (const double least : {kLeast, -kLeast, 5 * kLeast, std::numeric_limits<double>::min()}) {
    EXPECT_EQ(Bits(Sine(least)), Bits(least));
    EXPECT_EQ(Bits(Cosine(least)), Bits(1.0));
    EXPECT_EQ(Bits(ArcTangent(least)), Bits(least));
  }
}

TEST(ElementaryTest, InfiniteAnglesHaveNoSine) {
  for (const double radians : {kInfinity, -kInfinity, kNaN}) {
    EXPECT_TRUE(std::isnan(Sine(radians)));
    EXPECT_TRUE(std::isnan(Cosine(radians)));
    EXPECT_TRUE(std::isnan(SineAndCosine(radians).sine));
    EXPECT_TRUE(std::isnan(SineAndCosine(radians).cosine));
  }
}

TEST(ElementaryTest, ArcTangentEndsAtQuarterTurns) {
  for (const double value : {kInfinity, kLargest, 0x1p53, 0x1p60}) {
    EXPECT_EQ(Bits(ArcTangent(value)), Bits(kHalfPi));
    EXPECT_EQ(Bits(ArcTangent(-value)), Bits(-kHalfPi));
  }
  EXPECT_TRUE(std::isnan(ArcTangent(kNaN)));
}

// --- Powers ----------------------------------------------------------------------------------------------

TEST(ElementaryTest, HalfPowerIsTheRoot) {
  EXPECT_EQ(Bits(HalfPower(2.0)), Bits(0x1.6a09e667f3bcdp+0));
  EXPECT_EQ(Bits(HalfPower(6.25)), Bits(2.5));
  EXPECT_EQ(Bits(HalfPower(kLeast)), Bits(0x1p-537));
  EXPECT_EQ(Bits(HalfPower(kLargest)), Bits(0x1.fffffffffffffp+511));
  EXPECT_EQ(HalfPower(kInfinity), kInfinity);
}

TEST(ElementaryTest, HalfPowersOfZerosArePositiveAndOfNegativeBasesNone) {
  EXPECT_EQ(Bits(HalfPower(0.0)), Bits(0.0));
  EXPECT_EQ(Bits(HalfPower(-0.0)), Bits(0.0));
  for (const double base : {-kLeast, -1.0, -kInfinity, kNaN}) EXPECT_TRUE(std::isnan(HalfPower(base)));
}

TEST(ElementaryTest, SquareIsTheProduct) {
  EXPECT_EQ(Bits(Square(-1.5)), Bits(2.25));
  ForRandomArguments(-530, 511,
                     [](double base) { EXPECT_EQ(Bits(Square(base)), Bits(IntegerPower(base, 2))); });
}

TEST(ElementaryTest, EveryBaseToThePowerOfZeroIsOne) {
  for (const double base : {0.0, -0.0, 1.0, -7.5, kLeast, kLargest, kInfinity, -kInfinity, kNaN}) {
    EXPECT_EQ(Bits(IntegerPower(base, 0)), Bits(1.0));
  }
}

TEST(ElementaryTest, PowersOfZerosAndInfinitiesHaveTheExactPowersSign) {
  for (const double base : {0.0, kInfinity}) {
    for (const std::uint32_t exponent : {1U, 3U, 4294967295U}) {
      EXPECT_EQ(Bits(IntegerPower(base, exponent)), Bits(base));
      EXPECT_EQ(Bits(IntegerPower(-base, exponent)), Bits(-base));
    }
    for (const std::uint32_t exponent : {2U, 4U, 4294967294U}) {
      EXPECT_EQ(Bits(IntegerPower(-base, exponent)), Bits(base));
    }
  }
  for (const std::uint32_t exponent : {1U, 2U, 3U, 8U}) EXPECT_TRUE(std::isnan(IntegerPower(kNaN, exponent)));
}

TEST(ElementaryTest, PowersOfOneAreOneWhateverTheExponent) {
  EXPECT_EQ(IntegerPower(1.0, 4294967295U), 1.0);
  EXPECT_EQ(IntegerPower(-1.0, 4294967295U), -1.0);
  EXPECT_EQ(IntegerPower(-1.0, 4294967294U), 1.0);
}

}  // namespace
}  // namespace vorquill21
