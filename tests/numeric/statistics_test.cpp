#include "vorquill21/numeric/statistics.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/self_test.hpp"
#include "tests/support/ulps.hpp"
#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/extremes.hpp"
#include "vorquill21/numeric/running_mean.hpp"
#include "vorquill21/numeric/squared_distances.hpp"

namespace vorquill21 {

VORQUILL21_OPEN_SELF_TEST(CStatistics);

namespace {

using test::BitsOrNaN;
using test::RaisedNumber;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr std::int32_t kMostInt32 = std::numeric_limits<std::int32_t>::max();

BoundedArray<double> From(std::int32_t lower, std::vector<double> elements) {
  return BoundedArray<double>(std::move(elements), lower);
}

class CStatisticsTest : public testing::Test {
 protected:
  test::FakePlatform fake;
  CStatistics statistics{fake.platform};
};

// --- Values ----------------------------------------------------------------------------------------------

TEST_F(CStatisticsTest, RoundsAsTheStepsRoundInTheirOrder) {
  struct Row {
    std::vector<double> values;
    double mean;
    double variance;
    double variancePop;
    double deviation;
    double deviationPop;
    double rms;
  };
  const Row rows[] = {
      {{0.9, 1.3, 1.4, 1.2, 0.8, 1.0},
       0x1.1999999999999p+0,
       0x1.cac083126e976p-5,
       0x1.7e4b17e4b17e3p-5,
       0x1.e4a52f7c75ef0p-3,
       0x1.ba6b27139ad36p-3,
       0x1.1efa9b33d4ab4p+0},
      {{3, 9, 9}, 7, 12, 8, 0x1.bb67ae8584caap+1, 0x1.6a09e667f3bcdp+1, 0x1.e3307cc56cf5cp+2},
      {{0.1, 0.2, 0.3},
       0x1.999999999999ap-3,
       0x1.47ae147ae147ap-7,
       0x1.b4e81b4e81b4dp-8,
       0x1.9999999999999p-4,
       0x1.4e6fdf33cf031p-4,
       0x1.ba6b27139ad37p-3},
      {{0.001, 0.004, 0.009, 0.016, 0.025, 0.036, 0.049, 0.064, 0.081, 0.1},
       0x1.3b645a1cac084p-5,
       0x1.3223f7e537b62p-10,
       0x1.1386c5817ef0bp-10,
       0x1.17f32f33a59a0p-5,
       0x1.099575f9b2ac3p-5,
       0x1.9c51a43711787p-5},
      {{5e-324, 5e-324, 1e-323}, 5e-324, 0, 0, 0, 0, 0},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(BitsOrNaN(statistics.ArithmeticMean(row.values)), BitsOrNaN(row.mean));
    EXPECT_EQ(BitsOrNaN(statistics.Variance(row.values)), BitsOrNaN(row.variance));
    EXPECT_EQ(BitsOrNaN(statistics.VariancePop(row.values)), BitsOrNaN(row.variancePop));
    EXPECT_EQ(BitsOrNaN(statistics.StandardDeviation(row.values)), BitsOrNaN(row.deviation));
    EXPECT_EQ(BitsOrNaN(statistics.StandardDeviationPop(row.values)), BitsOrNaN(row.deviationPop));
    EXPECT_EQ(BitsOrNaN(statistics.RMS(row.values)), BitsOrNaN(row.rms));
  }
}

TEST_F(CStatisticsTest, MeanStaysNearTheMagnitudeOfTheData) {
  EXPECT_EQ(statistics.ArithmeticMean(std::vector<double>{1e300, -1e300, 1e300}), 0x1.fdafb60009cd0p+994);
  EXPECT_EQ(statistics.ArithmeticMean(std::vector<double>(1000, kLargest / 2)), 0x1.ffffffffffff4p+1022);
}

TEST_F(CStatisticsTest, RmsOfOppositeValues) {
  EXPECT_EQ(statistics.RMS(std::vector<double>{-2, 2}), 2.0);
}

TEST_F(CStatisticsTest, SingleElement) {
  const std::vector<double> single{2.5};
  EXPECT_EQ(statistics.ArithmeticMean(single), 2.5);
  EXPECT_EQ(statistics.Maximum(single), 2.5);
  EXPECT_EQ(statistics.Minimum(single), 2.5);
  EXPECT_EQ(statistics.RMS(single), 2.5);
  EXPECT_EQ(statistics.Variance(single), 0.0);
  EXPECT_EQ(statistics.VariancePop(single), 0.0);
  EXPECT_EQ(statistics.StandardDeviation(single), 0.0);
  EXPECT_EQ(statistics.StandardDeviationPop(single), 0.0);
  EXPECT_EQ(BitsOrNaN(statistics.ArithmeticMean(std::vector<double>{-0.0})), BitsOrNaN(0.0));
  EXPECT_EQ(BitsOrNaN(statistics.Maximum(std::vector<double>{-0.0})), BitsOrNaN(-0.0));
}

TEST_F(CStatisticsTest, NoElementsGiveZero) {
  const BoundedArray<double> empty = BoundedArray<double>::Empty();
  EXPECT_EQ(BitsOrNaN(statistics.ArithmeticMean(empty)), BitsOrNaN(0.0));
  EXPECT_EQ(BitsOrNaN(statistics.Variance(empty)), BitsOrNaN(0.0));
  EXPECT_EQ(BitsOrNaN(statistics.VariancePop(empty)), BitsOrNaN(0.0));
  EXPECT_EQ(BitsOrNaN(statistics.StandardDeviation(empty)), BitsOrNaN(0.0));
  EXPECT_EQ(BitsOrNaN(statistics.StandardDeviationPop(empty)), BitsOrNaN(0.0));
  EXPECT_EQ(BitsOrNaN(statistics.RMS(empty)), BitsOrNaN(0.0));
}

TEST_F(CStatisticsTest, BoundsMakeNoDifferenceButToTheIndex) {
  for (const std::int32_t lower : {-7, 0, 1, 5, kMostInt32 - 2}) {
    const BoundedArray<double> values = From(lower, {3, 9, 9});
    EXPECT_EQ(statistics.ArithmeticMean(values), 7);
    EXPECT_EQ(statistics.Variance(values), 12);
    std::int32_t index = 77;
    EXPECT_EQ(statistics.Maximum(values, &index), 9);
    EXPECT_EQ(index, lower + 1);
    EXPECT_EQ(statistics.Minimum(values, &index), 3);
    EXPECT_EQ(index, lower);
  }
}

// --- Extremes --------------------------------------------------------------------------------------------

TEST_F(CStatisticsTest, ExtremesKeepTheFirstOfEqualElements) {
  struct Row {
    std::vector<double> values;
    std::int32_t maximum;
    std::int32_t minimum;
  };
  const Row rows[] = {
      {{1, 2, 2, 1}, 1, 0},          {{-0.0, 0.0}, 0, 0},
      {{0.0, -0.0}, 0, 0},           {{kNaN, 5, -5}, 0, 0},
      {{1, kNaN, 2, kNaN, 0}, 2, 4}, {{kInfinity, kInfinity}, 0, 0},
      {{-kInfinity, kNaN}, 0, 0},    {{2, 1, kInfinity, -kInfinity}, 2, 3},
  };
  for (const Row& row : rows) {
    std::int32_t index = -1;
    EXPECT_EQ(BitsOrNaN(statistics.Maximum(row.values, &index)),
              BitsOrNaN(row.values[std::size_t(row.maximum)]));
    EXPECT_EQ(index, row.maximum);
    EXPECT_EQ(BitsOrNaN(statistics.Minimum(row.values, &index)),
              BitsOrNaN(row.values[std::size_t(row.minimum)]));
    EXPECT_EQ(index, row.minimum);
  }
}

TEST_F(CStatisticsTest, ExtremesOfNoElementsAreOutOfRange) {
  std::int32_t index = 77;
  const BoundedArray<double> empty = BoundedArray<double>::Empty();
  EXPECT_EQ(RaisedNumber([&] { statistics.Maximum(empty, &index); }), kSubscriptOutOfRange);
  EXPECT_EQ(index, 0);
  index = 77;
  EXPECT_EQ(RaisedNumber([&] { statistics.Minimum(empty, &index); }), kSubscriptOutOfRange);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(RaisedNumber([&] { statistics.Maximum(empty); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { statistics.Minimum(empty); }), kSubscriptOutOfRange);
}

TEST_F(CStatisticsTest, ExtremesAreTheSameWithoutTheirIndex) {
  const std::vector<double> values{0.9, 1.3, 1.4, 1.2, 0.8, 1.0};
  std::int32_t index = 77;
  EXPECT_EQ(statistics.Maximum(values, &index), 1.4);
  EXPECT_EQ(index, 2);
  EXPECT_EQ(statistics.Minimum(values, &index), 0.8);
  EXPECT_EQ(index, 4);
  EXPECT_EQ(statistics.Maximum(values), 1.4);
  EXPECT_EQ(statistics.Minimum(values), 0.8);
}

template <typename Precedes>
std::size_t PositionByComparing(const std::vector<double>& values, Precedes precedes) {
  std::size_t position = 0;
  for (std::size_t i = 1; i < values.size(); ++i) {
    if (precedes(values[i], values[position])) position = i;
  }
  return position;
}

TEST(ExtremesTest, AgreeWithComparingOneByOne) {
  std::mt19937_64 random(11);
  for (int round = 0; round < 3000; ++round) {
    std::vector<double> values(static_cast<std::size_t>(1 + random() % 5000));
    const auto different = 1 + random() % 3000;
    for (double& value : values) {
      value = static_cast<double>(random() % different) - static_cast<double>(different) / 2.0;
      if (random() % 500 == 0) value = random() % 2 == 0 ? kNaN : -0.0;
    }
    ASSERT_EQ(PositionOfMaximum(values), PositionByComparing(values, std::greater<>()));
    ASSERT_EQ(PositionOfMinimum(values), PositionByComparing(values, std::less<>()));
  }
}

// --- The promised steps ----------------------------------------------------------------------------------

// Each result is looked at where it arises, and nothing is done in any other order than the promised one.

double MeanBySteps(const std::vector<double>& values) {
  double mean = 0.0;
  double k = 0.0;
  for (const double x : values) {
    k += 1.0;
    mean = CheckedQuotient(mean, k);
    mean = CheckedSum(CheckedQuotient(x, k), CheckedProduct(k - 1.0, mean));
  }
  return mean;
}

double VarianceBySteps(const std::vector<double>& values, double divisor) {
  const double mean = MeanBySteps(values);
  double sum = 0.0;
  for (const double x : values) {
    const double distance = CheckedDifference(mean, x);
    sum = CheckedSum(sum, CheckedProduct(distance, distance));
  }
  return divisor > 0.0 ? CheckedQuotient(sum, divisor) : 0.0;
}

double DeviationBySteps(const std::vector<double>& values, double divisor) {
  const double variance = VarianceBySteps(values, divisor);
  return variance == 0.0 ? 0.0 : std::sqrt(variance);
}

double RmsBySteps(const std::vector<double>& values) {
  double sum = 0.0;
  for (const double x : values) sum = CheckedSum(sum, CheckedProduct(x, x));
  const auto count = static_cast<double>(values.size());
  const double meanSquare = count > 0.0 ? CheckedQuotient(sum, count) : 0.0;
  return meanSquare <= 0.0 ? meanSquare : std::sqrt(meanSquare);
}

/// The bits of a result, or the number of the error.
template <typename Operation>
std::uint64_t Outcome(Operation operation) {
  try {
    return BitsOrNaN(operation());
  } catch (const LibraryError& error) {
    return static_cast<std::uint64_t>(error.Number());
  }
}

TEST_F(CStatisticsTest, EveryResultIsWhatItsStepsComeTo) {
  constexpr double kOdd[] = {0.0,   -0.0,   5e-324,   1e-200,    1e154,     -1e160, 0x1p1023,
                             1e300, -1e308, kLargest, -kLargest, kInfinity, kNaN,   -kInfinity};
  std::mt19937_64 random(17);
  std::normal_distribution<double> normal(2.0, 3.0);
  int faults = 0;
  for (int round = 0; round < 20'000; ++round) {
    // Mostly few elements, every hundredth time enough for those that are worked on side by side.
    std::vector<double> values(static_cast<std::size_t>(random() % (round % 100 == 0 ? 2000u : 9u)));
    for (double& value : values) value = random() % 3 == 0 ? std::round(normal(random)) : normal(random);
    for (auto odd = random() % 3; odd > 0 && !values.empty(); --odd) {
      values[static_cast<std::size_t>(random() % values.size())] = kOdd[random() % std::size(kOdd)];
    }
    const std::int32_t lowers[] = {0, 1, -3, std::numeric_limits<std::int32_t>::min(), kMostInt32 - 2000};
    const BoundedArray<double> array = From(lowers[random() % std::size(lowers)], values);
    const auto count = static_cast<double>(values.size());
    const auto expectSame = [&](double (CStatistics::*method)(ArrayView<const double>) const, auto steps) {
      const std::uint64_t expected = Outcome(steps);
      EXPECT_EQ(Outcome([&] { return (statistics.*method)(array); }), expected)
          << testing::PrintToString(values);
      faults += expected == std::uint64_t{kOverflow} ? 1 : 0;
    };
    expectSame(&CStatistics::ArithmeticMean, [&] { return MeanBySteps(values); });
    expectSame(&CStatistics::Variance, [&] { return VarianceBySteps(values, count - 1.0); });
    expectSame(&CStatistics::VariancePop, [&] { return VarianceBySteps(values, count); });
    expectSame(&CStatistics::StandardDeviation, [&] { return DeviationBySteps(values, count - 1.0); });
    expectSame(&CStatistics::StandardDeviationPop, [&] { return DeviationBySteps(values, count); });
    expectSame(&CStatistics::RMS, [&] { return RmsBySteps(values); });
    if (HasFailure()) return;
  }
  EXPECT_GT(faults, 1000);
}

// --- Fast ways against the steps -------------------------------------------------------------------------

/// Data of the kinds that decide which way is taken: sizes from subnormal to huge, changes of sign, zeros,
/// equal values, few digits.
std::vector<double> RandomData(std::mt19937_64& random) {
  std::vector<double> values(static_cast<std::size_t>(random() % 3000));
  const auto kind = random() % 8;
  std::normal_distribution<double> normal(0.0, 1.0);
  std::uniform_int_distribution<int> exponents(-1074, 1020);
  const double offset = std::ldexp(1.0, static_cast<int>(random() % 60));
  const double scale = std::ldexp(1.0, exponents(random));
  for (double& value : values) {
    const double noise = normal(random);
    switch (kind) {
      case 0:
        value = noise;
        break;
      case 1:
        value = offset + noise;
        break;
      case 2:
        value = noise * scale;
        break;
      case 3:
        value = std::ldexp(noise, exponents(random));
        break;
      case 4:
        value = std::round(noise * 8.0) / 8.0;
        break;
      case 5:
        value = offset;
        break;
      case 6:
        value = (&value - values.data()) % 2 == 0 ? offset : -offset;
        break;
      default:
        value = std::round(noise) * 0.1;
        break;
    }
  }
  return values;
}

TEST(RunningMeanTest, EqualsTheStepsToTheBit) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 2000; ++round) {
    const std::vector<double> values = RandomData(random);
    ASSERT_EQ(Outcome([&] { return RunningMean(values); }),
              Outcome([&] { return RunningMeanByDivision(values); }))
        << round;
  }
}

TEST(RunningMeanTest, EqualsTheStepsForAMillionElements) {
  std::mt19937_64 random(2);
  std::normal_distribution<double> normal(20.0, 3.0);
  std::vector<double> values(1'000'000);
  for (double& value : values) value = normal(random);
  EXPECT_EQ(BitsOrNaN(RunningMean(values)), BitsOrNaN(RunningMeanByDivision(values)));
}

TEST(SquaredDistancesTest, EqualTheStepsToTheBit) {
  std::mt19937_64 random(3);
  for (int round = 0; round < 2000; ++round) {
    const std::vector<double> values = RandomData(random);
    for (const double from : {0.0, values.empty() ? 1.0 : values.front(), 0.125}) {
      ASSERT_EQ(Outcome([&] { return SumOfSquaredDistances(values, from); }),
                Outcome([&] { return SumOfSquaredDistancesInOrder(values, from); }))
          << round;
    }
  }
}

TEST(SquaredDistancesTest, TermsBetweenTwoUnitsRoundToEvenInTheirOrder) {
  std::vector<double> values(4096, 0x1.0p-27);  // squares of half a unit in the last place of the sum
  values[0] = 1.0;
  EXPECT_EQ(SumOfSquaredDistances(values, 0.0), SumOfSquaredDistancesInOrder(values, 0.0));
  values[0] = std::sqrt(1.0 + 0x1p-20);
  EXPECT_EQ(SumOfSquaredDistances(values, 0.0), SumOfSquaredDistancesInOrder(values, 0.0));
}

// --- Faults ----------------------------------------------------------------------------------------------

TEST_F(CStatisticsTest, OverflowIsAnErrorWhereverItHappens) {
  for (const std::size_t count : {2u, 3000u}) {
    std::vector<double> values(count, 1.0);
    values[count / 2] = 1e200;
    EXPECT_EQ(RaisedNumber([&] { statistics.RMS(values); }), kOverflow);
    EXPECT_EQ(RaisedNumber([&] { statistics.Variance(values); }), kOverflow);
    EXPECT_EQ(RaisedNumber([&] { statistics.StandardDeviationPop(values); }), kOverflow);
    EXPECT_EQ(RaisedNumber([&] { statistics.ArithmeticMean(values); }), 0);
  }
}

TEST_F(CStatisticsTest, InfiniteAndUndefinedElementsPass) {
  for (const std::size_t count : {3u, 3000u}) {
    std::vector<double> values(count, 1.0);
    values[count / 2] = kInfinity;
    EXPECT_EQ(statistics.ArithmeticMean(values), kInfinity);
    EXPECT_EQ(statistics.RMS(values), kInfinity);
    EXPECT_TRUE(std::isnan(statistics.Variance(values)));
    values[count / 2] = kNaN;
    EXPECT_TRUE(std::isnan(statistics.ArithmeticMean(values)));
    EXPECT_TRUE(std::isnan(statistics.RMS(values)));
    EXPECT_TRUE(std::isnan(statistics.StandardDeviation(values)));
  }
}

TEST_F(CStatisticsTest, ArraysOfOtherShapesAreOutOfRange) {
  for (const BoundedArray<double>& array : {BoundedArray<double>(), BoundedArray<double>({1, 2}, {1, 2})}) {
    std::int32_t index = 77;
    EXPECT_EQ(RaisedNumber([&] { statistics.ArithmeticMean(array); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { statistics.Maximum(array, &index); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { statistics.Minimum(array, &index); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { statistics.Variance(array); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { statistics.VariancePop(array); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { statistics.StandardDeviation(array); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { statistics.StandardDeviationPop(array); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { statistics.RMS(array); }), kSubscriptOutOfRange);
    EXPECT_EQ(index, 77);
  }
}

TEST_F(CStatisticsTest, DeliberateArithmeticMeanIsTheRunningForm) {
  const std::vector<double> values{0.1, 0.2, 0.4};
  EXPECT_EQ(statistics.ArithmeticMean(values), 0x1.ddddddddddddep-3);
  EXPECT_EQ((0.1 + 0.2 + 0.4) / 3.0, 0x1.ddddddddddddfp-3);
}

TEST_F(CStatisticsTest, SelfTestPasses) {
  EXPECT_EQ(SelfTest(statistics), FailedTests{});
}

}  // namespace
}  // namespace vorquill21
