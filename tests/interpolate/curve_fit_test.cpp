#include "vorquill21/interpolate/curve_fit.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <vector>

#include "tests/interpolate/fit_cases.hpp"
#include "tests/interpolate/rounded_once.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/ulps.hpp"

namespace vorquill21::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kUnset = -1.0;

struct Fit {
  BoundedArray<double> coefficients{Bounds{7, 8}};  // as if used before
  double stdDev = kUnset;
  std::int32_t error = 0;

  Fit(ArrayView<const double> xs, ArrayView<const double> ys, std::int32_t order,
      bool fused = HasFusedMultiplication()) {
    error = RaisedNumber([&] { FitCurve(xs, ys, order, coefficients, &stdDev, fused); });
  }

  std::vector<double> Coefficients() const {
    return {coefficients.Elements().begin(), coefficients.Elements().end()};
  }
};

// The expected numbers are exact solutions that make_fit_cases.py wrote into fit_cases.hpp.
TEST(CurveFitTest, CoefficientsAreTheExactOnesRoundedOnce) {
  for (const CurveCase& expected : kCurveCases) {
    SCOPED_TRACE(expected.name);
    const Fit fit(expected.xs, expected.ys, expected.order);
    ASSERT_EQ(fit.error, 0);
    for (std::size_t k = 0; k < expected.coefficients.size(); ++k) {
      SCOPED_TRACE(k);
      const double fitted = fit.coefficients(static_cast<std::int32_t>(k) + 1);
      ExpectRoundedOnce(fitted, expected.coefficients[k], expected.coefficients);
    }
  }
}

TEST(CurveFitTest, StandardDeviationDividesByOneLessThanThePoints) {
  for (const CurveCase& expected : kCurveCases) {
    SCOPED_TRACE(expected.name);
    const Fit fit(expected.xs, expected.ys, expected.order);
    ExpectRoundedOnce(fit.stdDev, expected.stdDev, expected.ys);
  }
  const double xs[] = {0.0, 1.0, 2.0};
  const double ys[] = {0.0, 1.0, 0.0};
  EXPECT_EQ(Fit(xs, ys, 1).stdDev, 0.57735026918962576);  // sqrt((1/9 + 4/9 + 1/9) / 2)
}

void ExpectSameBitsOnBothPaths(std::span<const double> xs, std::span<const double> ys, std::int32_t order) {
  const Fit plain(xs, ys, order, false);
  const Fit fused(xs, ys, order, true);
  EXPECT_EQ(plain.error, fused.error);
  EXPECT_TRUE(std::ranges::equal(plain.Coefficients(), fused.Coefficients(), SameBits));
  EXPECT_TRUE(SameBits(plain.stdDev, fused.stdDev));
}

TEST(CurveFitTest, FusedMultiplicationDoesNotChangeABit) {
  if (!HasFusedMultiplication()) GTEST_SKIP() << "the processor or this build has no fused multiplication";
  for (const CurveCase& points : kCurveCases) ExpectSameBitsOnBothPaths(points.xs, points.ys, points.order);
  std::mt19937_64 random(5);
  std::normal_distribution<double> normal;
  for (int i = 0; i < 200; ++i) {
    std::vector<double> xs(static_cast<std::size_t>(10 + random() % 90));
    std::vector<double> ys(xs.size());
    for (double& x : xs) x = std::ldexp(normal(random), static_cast<int>(random() % 40));
    for (double& y : ys) y = normal(random);
    ExpectSameBitsOnBothPaths(xs, ys, static_cast<std::int32_t>(random() % 9) + 1);
  }
}

TEST(CurveFitTest, CheckOfTheClassGivesItsValueExactly) {
  const std::vector<double> xs = {1.0, 2.0, 3.0, 4.0};
  const std::vector<double> ys = {0.0, 5.0, 15.0, 80.0};
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  for (const std::int32_t lower : {0, 1, -3, 1000, kLeast, kMost - 3}) {
    const Fit fit(BoundedArray<double>(xs, lower), BoundedArray<double>(ys, lower), 2);
    EXPECT_EQ(fit.coefficients, BoundedArray<double>({37.5, -50.0, 15.0, 0.0}, 1));
    EXPECT_EQ(EvaluateCurve(2.5, fit.coefficients), 6.25);
  }
}

TEST(CurveFitTest, OneElementForEachPointNotForEachTerm) {
  const double xs[] = {0.0, 1.0, 2.0, 3.0, 4.0};
  const double ys[] = {1.0, 3.0, 5.0, 7.0, 9.0};
  const Fit fit(xs, ys, 1);
  EXPECT_EQ(fit.coefficients, BoundedArray<double>({1.0, 2.0, 0.0, 0.0, 0.0}, 1));
  EXPECT_EQ(EvaluateCurve(10.0, fit.coefficients), 21.0);
}

TEST(CurveFitTest, YIsReadAtTheIndicesOfX) {
  const BoundedArray<double> xs({1.0, 2.0, 3.0}, 5);
  const BoundedArray<double> ys({99.0, 2.0, 4.0, 6.0, 99.0}, 4);
  EXPECT_EQ(Fit(xs, ys, 1).coefficients, BoundedArray<double>({0.0, 2.0, 0.0}, 1));
}

TEST(CurveFitTest, OrderZeroFitsNothing) {
  const double xs[] = {1.0, 2.0};
  const double ys[] = {5.0, 7.0};
  const Fit fit(xs, ys, 0);
  EXPECT_EQ(fit.error, 0);
  EXPECT_EQ(fit.coefficients, BoundedArray<double>({0.0, 0.0}, 1));
  EXPECT_EQ(fit.stdDev, 0.0);
}

TEST(CurveFitTest, OrderThatThePointsDoNotSupportKeepsTheHighestThatTheyDo) {
  struct Row {
    std::vector<double> xs, ys;
    std::int32_t order;
    std::vector<double> coefficients;
    double stdDev;
  };
  const Row rows[] = {
      {{1.0, 3.0}, {2.0, 6.0}, 2, {0.0, 2.0}, 0.0},
      {{1.0, 3.0}, {2.0, 6.0}, 2000000000, {0.0, 2.0}, 0.0},
      {{4.0}, {7.0}, 1, {0.0}, 0.0},
      {{4.0, 4.0, 4.0}, {7.0, 8.0, 9.0}, 1, {0.0, 0.0, 0.0}, 0.0},
      {{0.0, 0.0}, {7.0, 8.0}, 1, {0.0, 0.0}, 0.0},
      {{0.1, 0.1, 0.7, 0.7}, {1.0, 1.0, 4.0, 4.0}, 3, {0.5, 5.0, 0.0, 0.0}, 0.0},
      {{-1.0, 1.0, -1.0, 1.0}, {0.0, 0.0, 2.0, 2.0}, 2, {1.0, 0.0, 0.0, 0.0}, std::sqrt(4.0 / 3.0)},
      {{1e-300, 1e300, 2e300}, {0.0, 1.0, 2.0}, 3, {0.0, 1e-300, 0.0}, 0.0},
      {{0.0, 1e-30, 1.0}, {1.0, 1.0, 3.0}, 2, {1.0, 2.0, 0.0}, 0.0},
  };
  constexpr double kRoundingOf32Digits = 1e-31;
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.xs));
    const Fit fit(row.xs, row.ys, row.order);
    EXPECT_EQ(fit.error, kDivisionByZero);
    ASSERT_EQ(fit.coefficients.Elements().size(), row.coefficients.size());
    for (std::size_t k = 0; k < row.coefficients.size(); ++k) {
      EXPECT_NEAR(fit.Coefficients()[k], row.coefficients[k],
                  4e-16 * std::abs(row.coefficients[k]) + kRoundingOf32Digits);
    }
    EXPECT_NEAR(fit.stdDev, row.stdDev, 1e-15);
  }
}

TEST(CurveFitTest, ManyRepeatedPointsNeverPassForDifferentOnes) {
  std::mt19937_64 random(6);
  std::uniform_real_distribution<double> uniform(-10.0, 10.0);
  for (int order = 1; order <= 6; ++order) {
    std::vector<double> places;
    for (int i = 0; i < order; ++i) places.push_back(uniform(random));
    std::vector<double> xs, ys;
    for (int i = 0; i < 5000; ++i) {
      xs.push_back(places[static_cast<std::size_t>(random() % places.size())]);
      ys.push_back(uniform(random));
    }
    EXPECT_EQ(Fit(xs, ys, order).error, kDivisionByZero) << order;
    EXPECT_EQ(Fit(xs, ys, order - 1).error, 0) << order;
  }
}

TEST(CurveFitTest, ScalesByPowersOfTwoAreExact) {
  const std::vector<double> xs = {0.3, 1.7, 2.2, 4.9, 5.5};
  const std::vector<double> ys = {1.1, -0.4, 3.3, 2.7, 9.1};
  const Fit fit(xs, ys, 2);
  for (const auto& [scaleX, scaleY] :
       {std::pair{0x1p-400, 0x1p200}, {0x1p400, 0x1p-200}, {0x1p-1, 0x1p1000}}) {
    std::vector<double> scaledXs, scaledYs;
    for (const double x : xs) scaledXs.push_back(x * scaleX);
    for (const double y : ys) scaledYs.push_back(y * scaleY);
    const Fit scaled(scaledXs, scaledYs, 2);
    EXPECT_EQ(scaled.error, 0);
    EXPECT_EQ(scaled.coefficients(1), fit.coefficients(1) * scaleY);
    EXPECT_EQ(scaled.coefficients(2), fit.coefficients(2) / scaleX * scaleY);
    EXPECT_EQ(scaled.coefficients(3), fit.coefficients(3) / scaleX * scaleY / scaleX);
    EXPECT_EQ(scaled.stdDev, fit.stdDev * scaleY);
  }
}

TEST(CurveFitTest, CoefficientBeyondTheLargestDoubleIsOverflow) {
  const double xs[] = {0.0, 1e-200, 2e-200};
  const double ys[] = {0.0, 1.0, 1e200};
  const Fit fit(xs, ys, 1);
  EXPECT_EQ(fit.error, kOverflow);
  EXPECT_NE(fit.coefficients(1), 0.0);
  EXPECT_EQ(fit.coefficients(2), 0.0);
  EXPECT_EQ(fit.stdDev, 0.0);
}

TEST(CurveFitTest, DeviationBeyondTheLargestDoubleIsOverflowAfterTheCoefficients) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  const double xs[] = {-1.0, 0.0, 1.0};
  const double ys[] = {kLargest, -kLargest, kLargest};
  const Fit fit(xs, ys, 1);
  EXPECT_EQ(fit.error, kOverflow);  // sqrt((4 + 16 + 4) / 9 / 2) of the largest
  EXPECT_EQ(fit.coefficients, BoundedArray<double>({kLargest / 3.0, 0.0, 0.0}, 1));
  EXPECT_EQ(fit.stdDev, 0.0);
}

TEST(CurveFitTest, ZerosOfEitherSignAreOnePoint) {
  EXPECT_EQ(Fit(std::vector{0.0, -0.0}, std::vector{1.0, 2.0}, 1).error, kDivisionByZero);
  EXPECT_EQ(Fit(std::vector{0.0, -0.0, 1.0}, std::vector{1.0, 1.0, 3.0}, 1).coefficients,
            BoundedArray<double>({1.0, 2.0, 0.0}, 1));
}

TEST(CurveFitTest, SubnormalPointsAreFittedAsOthersAre) {
  const double xs[] = {0.0, 0x1p-1074, 0x1p-1073, 0x1.8p-1073};
  const double ys[] = {1.0, 1.0, 1.0, 1.0};
  EXPECT_EQ(Fit(xs, ys, 1).coefficients, BoundedArray<double>({1.0, 0.0, 0.0, 0.0}, 1));
  const double line[] = {0x1p-1073, 0x1.8p-1073, 0x1p-1072, 0x1.4p-1072};
  EXPECT_EQ(Fit(xs, line, 1).coefficients, BoundedArray<double>({0x1p-1073, 1.0, 0.0, 0.0}, 1));
}

TEST(CurveFitTest, CoefficientBelowTheSmallestDoubleIsZero) {
  const double xs[] = {1e200, 2e200, 3e200};
  const double ys[] = {1.0, 4.0, 9.0};
  const Fit fit(xs, ys, 2);
  EXPECT_EQ(fit.error, 0);
  EXPECT_EQ(fit.coefficients(3), 0.0);
}

TEST(CurveFitTest, PointsThatAreNotFiniteMakeTheFitNaN) {
  for (const double strange : {kInfinity, -kInfinity, kNaN}) {
    for (const bool isInX : {true, false}) {
      std::vector<double> xs = {1.0, 2.0, 3.0, 4.0};
      std::vector<double> ys = {1.0, 2.0, 3.0, 5.0};
      (isInX ? xs : ys)[2] = strange;
      const Fit fit(xs, ys, 1);
      EXPECT_EQ(fit.error, 0);
      EXPECT_TRUE(std::isnan(fit.coefficients(1)));
      EXPECT_TRUE(std::isnan(fit.coefficients(2)));
      EXPECT_EQ(fit.coefficients(3), 0.0);
      EXPECT_TRUE(std::isnan(fit.stdDev));
      EXPECT_EQ(Fit(xs, ys, 4).error, kDivisionByZero);
      EXPECT_EQ(Fit(xs, ys, 0).coefficients, BoundedArray<double>(Bounds{1, 4}));
    }
  }
}

TEST(CurveFitTest, ErrorsLeaveWhatWasWrittenBefore) {
  const BoundedArray<double> untouched(Bounds{7, 8});
  const BoundedArray<double> zeros(Bounds{1, 3});
  const BoundedArray<double> points({1.0, 2.0, 3.0}, 1);
  struct Row {
    const char* what;
    BoundedArray<double> xs, ys;
    std::int32_t order;
    std::int32_t error;
    BoundedArray<double> coefficients;
  };
  const Row rows[] = {
      {"x was never dimensioned", {}, points, 1, kSubscriptOutOfRange, untouched},
      {"x has two dimensions", BoundedArray<double>(Bounds{0, 1}, Bounds{0, 1}), points, 1,
       kSubscriptOutOfRange, untouched},
      {"x has no elements", BoundedArray<double>::Empty(), points, 1, kSubscriptOutOfRange, untouched},
      {"more terms than 32 bits", points, points, 2147483647, kOverflow, untouched},
      {"negative order", points, points, -1, kSubscriptOutOfRange, zeros},
      {"y ends early", points, BoundedArray<double>({1.0, 2.0}, 1), 1, kSubscriptOutOfRange, zeros},
      {"y begins late", points, BoundedArray<double>({1.0, 2.0}, 2), 1, kSubscriptOutOfRange, zeros},
      {"y ends early, order 0", points, BoundedArray<double>({1.0, 2.0}, 1), 0, kSubscriptOutOfRange, zeros},
      {"y was never dimensioned", points, {}, 1, kSubscriptOutOfRange, zeros},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Fit fit(row.xs, row.ys, row.order);
    EXPECT_EQ(fit.error, row.error);
    EXPECT_EQ(fit.coefficients, row.coefficients);
    EXPECT_EQ(fit.stdDev, 0.0);
  }
}

TEST(CurveFitTest, OneArrayMayBePointsAndCoefficients) {
  BoundedArray<double> array({1.0, 2.0, 4.0}, 0);
  FitCurve(array, array, 1, array, nullptr);
  EXPECT_EQ(array, BoundedArray<double>({0.0, 1.0, 0.0}, 1));
}

// --- Evaluation ------------------------------------------------------------------------------------------

/// The value of x^exponent alone, by a coefficient of 1.
double PowerBy(double base, int exponent, bool fused) {
  BoundedArray<double> coefficients(Bounds{1, exponent + 1});
  coefficients(exponent + 1) = 1.0;
  return EvaluateCurve(base, coefficients, fused);
}

TEST(CurveEvaluationTest, PowersAreTheNearestDoubles) {
  for (const PowerCase& expected : kPowerCases) {
    for (const bool fused : {false, HasFusedMultiplication()}) {
      // A sum that begins with +0 never becomes -0.
      EXPECT_TRUE(SameBits(PowerBy(expected.base, expected.exponent, fused), 0.0 + expected.power))
          << std::hexfloat << expected.base << " ^ " << expected.exponent;
    }
  }
}

TEST(CurveEvaluationTest, TermsAreAddedFromTheConstantOn) {
  const BoundedArray<double> coefficients({1e16, 1.0, 1.0, 1.0, -1e16, 1.0, 1.0}, 1);
  double expected = 0.0;
  for (const double term : coefficients.Elements()) expected += term;
  EXPECT_EQ(EvaluateCurve(1.0, coefficients), expected);
  EXPECT_EQ(EvaluateCurve(0.1, BoundedArray<double>({0.3, 0.7, 0.9}, 1)),
            (0.3 + 0.7 * 0.1) + 0.9 * 0x1.47ae147ae147bp-7);
}

TEST(CurveEvaluationTest, ElementsBelowIndexOneAreIgnored) {
  EXPECT_EQ(EvaluateCurve(2.0, BoundedArray<double>({99.0, 1.0, 3.0}, 0)), 7.0);
  EXPECT_EQ(EvaluateCurve(2.0, BoundedArray<double>({99.0, 98.0, 97.0, 1.0, 3.0}, -2)), 7.0);
  EXPECT_EQ(EvaluateCurve(2.0, BoundedArray<double>({99.0}, 0)), 0.0);
  EXPECT_EQ(EvaluateCurve(2.0, BoundedArray<double>({99.0, 98.0}, -5)), 0.0);
  EXPECT_EQ(EvaluateCurve(2.0, BoundedArray<double>::Empty()), 0.0);
}

TEST(CurveEvaluationTest, ElementOneMustExist) {
  EXPECT_EQ(RaisedNumber([] {
              EvaluateCurve(2.0, BoundedArray<double>({1.0, 2.0}, 2));
            }),
            kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([] { EvaluateCurve(2.0, BoundedArray<double>()); }), kSubscriptOutOfRange);
}

TEST(CurveEvaluationTest, ZeroToThePowerOfZeroIsOne) {
  EXPECT_EQ(EvaluateCurve(0.0, BoundedArray<double>({5.0, 7.0}, 1)), 5.0);
  EXPECT_EQ(EvaluateCurve(-0.0, BoundedArray<double>({5.0, 7.0, 8.0}, 1)), 5.0);
}

TEST(CurveEvaluationTest, NothingUnderflowsOnTheWay) {
  const BoundedArray<double> coefficients({0.0, 0.0, 0x1p1000}, 1);
  EXPECT_EQ(EvaluateCurve(0x1.8p-530, coefficients), 0x1.2p-59);
  EXPECT_EQ(EvaluateCurve(0x1p-600, coefficients), 0.0);
}

TEST(CurveEvaluationTest, OverflowIsRaisedWhereverItHappens) {
  BoundedArray<double> zeros(Bounds{1, 400});
  zeros(1) = 1.0;
  EXPECT_EQ(EvaluateCurve(5.0, zeros), 1.0);  // 5^399 is below the largest double
  EXPECT_EQ(RaisedNumber([&] { EvaluateCurve(6.0, zeros); }), kOverflow);
  for (const double x : {0.0, 0.5, 1.0, -1.0, -5.0}) EXPECT_EQ(EvaluateCurve(x, zeros), 1.0) << x;
  EXPECT_EQ(RaisedNumber([&] {
              EvaluateCurve(-1e300, BoundedArray<double>({1.0, 1.0, 1.0}, 1));
            }),
            kOverflow);
  EXPECT_EQ(RaisedNumber([&] { EvaluateCurve(10.0, BoundedArray<double>({0.0, 1e308}, 1)); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { EvaluateCurve(1.0, BoundedArray<double>({1e308, 1e308}, 1)); }), kOverflow);
  EXPECT_EQ(EvaluateCurve(2.0, BoundedArray<double>(Bounds{1, 1024})), 0.0);
  EXPECT_EQ(RaisedNumber([&] { EvaluateCurve(2.0, BoundedArray<double>(Bounds{1, 1025})); }), kOverflow);
}

TEST(CurveEvaluationTest, OperandsThatAreNotFinitePassInSilence) {
  EXPECT_EQ(EvaluateCurve(kInfinity, BoundedArray<double>({1.0, 2.0}, 1)), kInfinity);
  EXPECT_EQ(EvaluateCurve(-kInfinity, BoundedArray<double>({1.0, 2.0}, 1)), -kInfinity);
  EXPECT_TRUE(std::isnan(EvaluateCurve(kInfinity, BoundedArray<double>({1.0, 0.0}, 1))));
  EXPECT_TRUE(std::isnan(EvaluateCurve(kNaN, BoundedArray<double>({1.0, 0.0}, 1))));
  EXPECT_EQ(EvaluateCurve(kNaN, BoundedArray<double>({1.0}, 1)), 1.0);
  EXPECT_EQ(EvaluateCurve(2.0, BoundedArray<double>({1.0, kInfinity}, 1)), kInfinity);
  EXPECT_TRUE(std::isnan(EvaluateCurve(2.0, BoundedArray<double>({1.0, kNaN}, 1))));
}

TEST(CurveEvaluationTest, FusedMultiplicationDoesNotChangeABit) {
  if (!HasFusedMultiplication()) GTEST_SKIP() << "the processor or this build has no fused multiplication";
  std::mt19937_64 random(7);
  std::normal_distribution<double> normal;
  for (int i = 0; i < 2000; ++i) {
    std::vector<double> coefficients(static_cast<std::size_t>(random() % 40 + 2));
    for (double& coefficient : coefficients) coefficient = normal(random);
    const double x = normal(random) * 10.0;
    EXPECT_TRUE(SameBits(EvaluateCurve(x, coefficients, false), EvaluateCurve(x, coefficients, true)));
  }
}

}  // namespace
}  // namespace vorquill21::test
