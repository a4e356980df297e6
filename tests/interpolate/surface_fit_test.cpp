#include "vorquill21/interpolate/surface_fit.hpp"

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
  double rms = kUnset;
  std::int32_t error = 0;

  Fit(ArrayView<const double> xs, ArrayView<const double> ys, ArrayView<const double> zs, std::int32_t order,
      bool fused = HasFusedMultiplication()) {
    error = RaisedNumber([&] { FitSurface(xs, ys, zs, order, coefficients, &rms, fused); });
  }
};

struct Points {
  std::vector<double> xs, ys, zs;

  void Add(double x, double y, double z) {
    xs.push_back(x);
    ys.push_back(y);
    zs.push_back(z);
  }
};

BoundedArray<double> Square(std::int32_t order, const std::vector<double>& elements = {}) {
  BoundedArray<double> square(Bounds{0, order}, Bounds{0, order});
  std::copy(elements.begin(), elements.end(), square.Elements().begin());
  return square;
}

// The expected numbers are exact solutions that make_fit_cases.py wrote into fit_cases.hpp.
TEST(SurfaceFitTest, CoefficientsAreTheExactOnesRoundedOnce) {
  for (const SurfaceCase& expected : kSurfaceCases) {
    SCOPED_TRACE(expected.name);
    const Fit fit(expected.xs, expected.ys, expected.zs, expected.order);
    ASSERT_EQ(fit.error, 0);
    ASSERT_EQ(fit.coefficients.BoundsOf(1), (Bounds{0, expected.order}));
    ASSERT_EQ(fit.coefficients.BoundsOf(2), (Bounds{0, expected.order}));
    for (std::size_t k = 0; k < expected.coefficients.size(); ++k) {
      SCOPED_TRACE(k);
      ExpectRoundedOnce(fit.coefficients.Elements()[k], expected.coefficients[k], expected.coefficients);
    }
  }
}

TEST(SurfaceFitTest, DeviationIsTheRootMeanSquareOfWhatEvaluationLeaves) {
  for (const SurfaceCase& points : kSurfaceCases) {
    SCOPED_TRACE(points.name);
    const Fit fit(points.xs, points.ys, points.zs, points.order);
    double squares = 0.0;
    for (std::size_t k = 0; k < points.xs.size(); ++k) {
      const double residual = points.zs[k] - EvaluateSurface(points.xs[k], points.ys[k], fit.coefficients);
      squares += residual * residual;
    }
    const double expected = std::sqrt(squares / static_cast<double>(points.xs.size()));
    EXPECT_NEAR(fit.rms, expected, expected * 1e-14);
  }
}

void ExpectSameBitsOnBothPaths(std::span<const double> xs, std::span<const double> ys,
                               std::span<const double> zs, std::int32_t order) {
  const Fit plain(xs, ys, zs, order, false);
  const Fit fused(xs, ys, zs, order, true);
  EXPECT_EQ(plain.error, fused.error);
  EXPECT_TRUE(std::ranges::equal(plain.coefficients.Elements(), fused.coefficients.Elements(), SameBits));
  EXPECT_TRUE(SameBits(plain.rms, fused.rms));
}

TEST(SurfaceFitTest, FusedMultiplicationDoesNotChangeABit) {
  if (!HasFusedMultiplication()) GTEST_SKIP() << "the processor or this build has no fused multiplication";
  for (const SurfaceCase& points : kSurfaceCases) {
    ExpectSameBitsOnBothPaths(points.xs, points.ys, points.zs, points.order);
  }
  std::mt19937_64 random(5);
  std::normal_distribution<double> normal;
  for (int i = 0; i < 100; ++i) {
    Points points;
    for (auto k = 30 + random() % 90; k > 0; --k) {
      const double x = std::ldexp(normal(random), static_cast<int>(random() % 20));
      const double y = normal(random);
      points.Add(x, y, normal(random));
    }
    ExpectSameBitsOnBothPaths(points.xs, points.ys, points.zs, static_cast<std::int32_t>(random() % 6));
  }
}

TEST(SurfaceFitTest, CheckOfTheClassGivesItsValue) {
  const double pi = 4.0 * std::atan(1.0);
  Points points;
  for (int x = -5; x <= 5; ++x) {
    for (int y = -5; y <= 5; ++y) points.Add(x, y, -std::cos(3 * pi * x / 10) * std::cos(pi * y / 10));
  }
  const Fit fit(points.xs, points.ys, points.zs, 3);
  EXPECT_NEAR(EvaluateSurface(1.1, 2.2, fit.coefficients), -0.00590613907411203, 1e-15);
  EXPECT_NEAR(fit.coefficients(0, 0), 0.008634, 1e-6);
  EXPECT_NEAR(fit.coefficients(0, 2), 0.016509, 1e-6);
  EXPECT_NEAR(fit.coefficients(2, 0), -0.007131, 1e-6);
  EXPECT_NEAR(fit.rms, 0.4134, 1e-4);
}

TEST(SurfaceFitTest, FirstIndexIsThePowerOfY) {
  const double xs[] = {0.0, 1.0, 0.0, 2.0};
  const double ys[] = {0.0, 0.0, 1.0, 3.0};
  const double zs[] = {2.0, 5.0, 7.0, 23.0};
  const Fit fit(xs, ys, zs, 1);
  EXPECT_EQ(fit.coefficients, Square(1, {2.0, 3.0, 5.0, 0.0}));
  EXPECT_EQ(fit.rms, 0.0);
}

TEST(SurfaceFitTest, ElementsBeyondTheOrderAreZero) {
  const double xs[] = {0.0, 1.0, 2.0, 0.0, 1.0, 2.0, -1.0};
  const double ys[] = {0.0, 0.5, 0.0, 1.0, 1.5, 2.0, -1.0};
  const double noise[] = {0.3, -1.1, 0.7, 0.2, -0.9, 1.3, 0.1};
  std::vector<double> saddle;
  for (std::size_t k = 0; k < std::size(xs); ++k) saddle.push_back(1.0 + xs[k] * ys[k]);
  EXPECT_EQ(Fit(xs, ys, saddle, 2).coefficients(0, 0), 1.0);
  EXPECT_EQ(Fit(xs, ys, saddle, 2).coefficients(1, 1), 1.0);
  for (const ArrayView<const double> zs : {ArrayView<const double>(saddle), ArrayView<const double>(noise)}) {
    const Fit fit(xs, ys, zs, 2);
    ASSERT_EQ(fit.error, 0);
    EXPECT_EQ(fit.coefficients(1, 2), 0.0);
    EXPECT_EQ(fit.coefficients(2, 1), 0.0);
    EXPECT_EQ(fit.coefficients(2, 2), 0.0);
  }
}

TEST(SurfaceFitTest, OrderZeroIsTheMean) {
  const Fit fit(std::vector{1.0, 1.0, 1.0}, std::vector{2.0, 2.0, 2.0}, std::vector{1.0, 2.0, 6.0}, 0);
  EXPECT_EQ(fit.coefficients, Square(0, {3.0}));
  EXPECT_EQ(fit.rms, 2.1602468994692870);  // the root of 14 / 3
}

TEST(SurfaceFitTest, PointsAreReadAtTheIndicesOfX) {
  const BoundedArray<double> xs({0.0, 1.0, 0.0}, 5);
  const BoundedArray<double> ys({99.0, 0.0, 0.0, 1.0}, 4);
  const BoundedArray<double> zs({2.0, 5.0, 7.0, 99.0}, 5);
  EXPECT_EQ(Fit(xs, ys, zs, 1).coefficients, Square(1, {2.0, 3.0, 5.0, 0.0}));
  for (const std::int32_t lower :
       {std::numeric_limits<std::int32_t>::min(), -2, std::numeric_limits<std::int32_t>::max() - 2}) {
    const BoundedArray<double> x({0.0, 1.0, 0.0}, lower);
    const BoundedArray<double> y({0.0, 0.0, 1.0}, lower);
    const BoundedArray<double> z({2.0, 5.0, 7.0}, lower);
    EXPECT_EQ(Fit(x, y, z, 1).coefficients, Square(1, {2.0, 3.0, 5.0, 0.0})) << lower;
  }
}

Points OnALine() {
  Points points;
  for (int i = 0; i < 20; ++i) points.Add(0.1 * i, 0.3 * i + 0.7, i % 3);
  return points;
}

Points OnACircle() {
  Points points;
  for (int i = 0; i < 20; ++i) points.Add(std::cos(i) + 3.0, std::sin(i) - 1.0, i % 3);
  return points;
}

Points OnThreeLines() {
  Points points;
  for (int i = 0; i < 30; ++i) points.Add(i % 3, 0.1 * i, i % 7);
  return points;
}

Points OnePlace() {
  Points points;
  for (int i = 0; i < 20; ++i) points.Add(0.1, 0.2, i);
  return points;
}

Points FivePlaces() {
  Points points;
  for (int i = 0; i < 500; ++i) points.Add(std::sqrt(i % 5), std::sin(i % 5), i);
  return points;
}

Points OneX() {
  Points points;
  for (int i = 0; i < 20; ++i) points.Add(0.1, i, i);
  return points;
}

Points OneY() {
  Points points;
  for (int i = 0; i < 20; ++i) points.Add(i, 1e200, i);
  return points;
}

TEST(SurfaceFitTest, PointsThatDoNotDetermineTheSurfaceAreAZeroDivisor) {
  struct Row {
    const char* what;
    Points points;
    std::int32_t greatestOrder;
  };
  const Row rows[] = {
      {"one place", OnePlace(), 0},     {"one x", OneX(), 0},         {"one y", OneY(), 0},
      {"a line", OnALine(), 0},         {"a circle", OnACircle(), 1}, {"three lines", OnThreeLines(), 2},
      {"five places", FivePlaces(), 1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const auto& [xs, ys, zs] = row.points;
    for (std::int32_t order = 0; order <= row.greatestOrder; ++order) {
      EXPECT_EQ(Fit(xs, ys, zs, order).error, 0) << order;
    }
    for (std::int32_t order = row.greatestOrder + 1; order <= 4; ++order) {
      const Fit fit(xs, ys, zs, order);
      EXPECT_EQ(fit.error, kDivisionByZero) << order;
      EXPECT_EQ(fit.coefficients, Square(order));
      EXPECT_EQ(fit.rms, kUnset);
    }
  }
}

TEST(SurfaceFitTest, FewerPointsThanTermsAreAZeroDivisor) {
  const std::vector<double> xs = {0.0, 1.0, 0.0, 1.0, 2.0};
  const std::vector<double> ys = {0.0, 0.0, 1.0, 2.0, 5.0};
  EXPECT_EQ(Fit(xs, ys, xs, 1).error, 0);
  EXPECT_EQ(Fit(xs, ys, xs, 2).error, kDivisionByZero);
}

TEST(SurfaceFitTest, ScalesByPowersOfTwoAreExact) {
  const SurfaceCase& points = kSurfaceCases[4];
  const Fit fit(points.xs, points.ys, points.zs, 2);
  Points scaled;
  for (std::size_t k = 0; k < points.xs.size(); ++k) {
    scaled.Add(points.xs[k] * 0x1p300, points.ys[k] * 0x1p-300, points.zs[k] * 0x1p100);
  }
  const Fit large(scaled.xs, scaled.ys, scaled.zs, 2);
  EXPECT_EQ(large.error, 0);
  EXPECT_EQ(large.rms, fit.rms * 0x1p100);
  for (std::int32_t i = 0; i <= 2; ++i) {
    for (std::int32_t j = 0; i + j <= 2; ++j) {
      EXPECT_EQ(large.coefficients(i, j), std::ldexp(fit.coefficients(i, j), 100 + 300 * i - 300 * j));
    }
  }
}

TEST(SurfaceFitTest, DeviationNeedsTheSurfaceWithinTheRangeOfDoubles) {
  const SurfaceCase& points = kSurfaceCases[4];
  std::vector<double> xs(points.xs.begin(), points.xs.end());
  for (double& x : xs) x *= 0x1p600;
  const Fit fit(xs, points.ys, points.zs, 2);
  EXPECT_EQ(fit.error, kOverflow);  // x^2 is out of range
  EXPECT_NE(fit.coefficients(0, 1), 0.0);
  EXPECT_EQ(fit.rms, kUnset);
}

TEST(SurfaceFitTest, CoefficientBeyondTheLargestDoubleIsOverflow) {
  const double places[] = {0.0, 1e-200, 0.0};
  const double others[] = {0.0, 0.0, 1e-200};
  const double zs[] = {1e199, 2e199, 4e199};
  const Fit fit(places, others, zs, 1);
  EXPECT_EQ(fit.error, kOverflow);
  EXPECT_EQ(fit.coefficients(0, 0), 1e199);
  EXPECT_EQ(fit.coefficients(0, 1), 0.0);
}

TEST(SurfaceFitTest, ResidualBeyondTheLargestDoubleIsOverflowAfterTheCoefficients) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  const std::vector<double> places(5, 1.0);
  const std::vector<double> zs = {kLargest, kLargest, kLargest, kLargest, -kLargest};
  const Fit fit(places, places, zs, 0);
  EXPECT_EQ(fit.error, kOverflow);  // -1 less 3/5 of the largest
  EXPECT_EQ(fit.coefficients, Square(0, {kLargest / 5.0 * 3.0}));
  EXPECT_EQ(fit.rms, kUnset);
  BoundedArray<double> coefficients;
  FitSurface(places, places, zs, 0, coefficients, nullptr);
  EXPECT_EQ(coefficients, fit.coefficients);
}

TEST(SurfaceFitTest, PointsThatAreNotFiniteMakeTheFitNaN) {
  for (const double strange : {kInfinity, -kInfinity, kNaN}) {
    for (int axis = 0; axis < 3; ++axis) {
      Points points{{0.0, 1.0, 0.0, 2.0}, {0.0, 0.0, 1.0, 3.0}, {2.0, 5.0, 7.0, 23.0}};
      (axis == 0 ? points.xs : axis == 1 ? points.ys : points.zs)[2] = strange;
      const Fit fit(points.xs, points.ys, points.zs, 1);
      EXPECT_EQ(fit.error, 0);
      for (const auto& [i, j] : {std::pair{0, 0}, {0, 1}, {1, 0}})
        EXPECT_TRUE(std::isnan(fit.coefficients(i, j)));
      EXPECT_EQ(fit.coefficients(1, 1), 0.0);
      EXPECT_TRUE(std::isnan(fit.rms));
      EXPECT_EQ(Fit(points.xs, points.ys, points.zs, 2).error, kDivisionByZero);
    }
  }
}

TEST(SurfaceFitTest, ErrorsLeaveWhatWasWrittenBefore) {
  const BoundedArray<double> untouched(Bounds{7, 8});
  const BoundedArray<double> three({1.0, 2.0, 4.0}, 1);
  const BoundedArray<double> two({1.0, 2.0}, 1);
  struct Row {
    const char* what;
    BoundedArray<double> xs, ys, zs;
    std::int32_t order;
    std::int32_t error;
    BoundedArray<double> coefficients;
  };
  const Row rows[] = {
      {"x was never dimensioned", {}, three, three, 1, kSubscriptOutOfRange, untouched},
      {"x has no elements", BoundedArray<double>::Empty(), three, three, 1, kSubscriptOutOfRange, untouched},
      {"negative order", three, three, three, -1, kSubscriptOutOfRange, untouched},
      {"more memory than there is", three, three, three, 2147483647, kOutOfMemory, untouched},
      {"y ends early", three, two, three, 1, kSubscriptOutOfRange, Square(1)},
      {"z ends early", three, three, two, 1, kSubscriptOutOfRange, Square(1)},
      {"z begins late", three, three, BoundedArray<double>({1.0, 2.0}, 2), 0, kSubscriptOutOfRange,
       Square(0)},
      {"z was never dimensioned", three, three, {}, 1, kSubscriptOutOfRange, Square(1)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Fit fit(row.xs, row.ys, row.zs, row.order);
    EXPECT_EQ(fit.error, row.error);
    EXPECT_EQ(fit.coefficients, row.coefficients);
    EXPECT_EQ(fit.rms, kUnset);
  }
}

TEST(SurfaceFitTest, OneArrayMayBePointsAndCoefficients) {
  BoundedArray<double> array({1.0, 2.0, 6.0}, 0);
  FitSurface(array, array, array, 0, array, nullptr);
  EXPECT_EQ(array, Square(0, {3.0}));
}

// --- Evaluation ------------------------------------------------------------------------------------------

/// The promised order of operations, written down once more without anything else.
double InPromisedOrder(double x, double y, const BoundedArray<double>& a) {
  const std::int32_t n = a.UpperBound(1);
  if (n == 0) return a(0, 0);
  std::vector<double> w(static_cast<std::size_t>(n + 2));
  double sum = 0.0;
  double t = 1.0;
  w[1] = 1.0;
  for (std::int32_t k = 2; k <= n + 1; ++k) {
    t = t * x;
    w[static_cast<std::size_t>(k)] = t;
    sum = sum + t * a(0, k - 1);
  }
  for (std::int32_t r = 2; r <= n + 1; ++r) {
    for (std::int32_t q = 1; q <= n + 2 - r; ++q) {
      double& product = w[static_cast<std::size_t>(q)];
      product = product * y;
      sum = sum + a(r - 1, q - 1) * product;
    }
  }
  return sum + a(0, 0);
}

TEST(SurfaceEvaluationTest, OrderOfOperationsIsKeptToTheBit) {
  std::mt19937_64 random(8);
  std::normal_distribution<double> normal;
  for (std::int32_t order = 0; order <= 20; ++order) {
    for (int i = 0; i < 50; ++i) {
      BoundedArray<double> square = Square(order);
      for (double& element : square.Elements()) element = normal(random);
      const double x = normal(random);
      const double y = normal(random);
      EXPECT_TRUE(SameBits(EvaluateSurface(x, y, square), InPromisedOrder(x, y, square))) << order;
    }
  }
  EXPECT_EQ(EvaluateSurface(1.0, 1.0, Square(1, {1.0, 1e16, -1e16, 0.0})), 1.0);
  EXPECT_EQ(EvaluateSurface(1.0, 1.0, Square(1, {1e16, 1.0, -1e16, 0.0})), 0.0);
}

TEST(SurfaceEvaluationTest, OnlyElementsUpToTheOrderAreLookedAt) {
  EXPECT_EQ(EvaluateSurface(2.0, 3.0, Square(1, {1.0, 10.0, 100.0, kNaN})), 321.0);
  BoundedArray<double> larger(Bounds{-1, 1}, Bounds{-2, 4});
  larger.Elements()[0] = kNaN;
  larger(0, 0) = 1.0;
  larger(0, 1) = 10.0;
  larger(1, 0) = 100.0;
  larger(1, 1) = kNaN;
  EXPECT_EQ(EvaluateSurface(2.0, 3.0, larger), 321.0);
}

TEST(SurfaceEvaluationTest, ElementsThatAreNeededMustExist) {
  for (const auto& coefficients : {
           BoundedArray<double>(),
           BoundedArray<double>(Bounds{0, 2}),
           BoundedArray<double>(Bounds{0, 0}),
           BoundedArray<double>(Bounds{0, 1}, Bounds{0, 1}, Bounds{0, 1}),
           BoundedArray<double>(Bounds{1, 2}, Bounds{0, 2}),
           BoundedArray<double>(Bounds{0, 2}, Bounds{1, 3}),
           BoundedArray<double>(Bounds{0, 2}, Bounds{0, 1}),
           BoundedArray<double>(Bounds{-3, -1}, Bounds{0, 1}),
           BoundedArray<double>(Bounds{2147483647, 2147483647}, Bounds{0, 1}),
       }) {
    EXPECT_EQ(RaisedNumber([&] { EvaluateSurface(2.0, 3.0, coefficients); }), kSubscriptOutOfRange);
  }
}

TEST(SurfaceEvaluationTest, OverflowIsRaisedEvenForAZeroCoefficient) {
  const auto number = [](double x, double y, const BoundedArray<double>& coefficients) {
    return RaisedNumber([&] { EvaluateSurface(x, y, coefficients); });
  };
  EXPECT_EQ(number(1e200, 1.0, Square(2)), kOverflow);
  EXPECT_EQ(number(1.0, -1e200, Square(2)), kOverflow);
  EXPECT_EQ(number(1e200, 1.0, Square(1)), 0);
  EXPECT_EQ(number(10.0, 1.0, Square(1, {0.0, 1e308, 0.0, 0.0})), kOverflow);
  EXPECT_EQ(number(1.0, 1.0, Square(1, {0.0, 1e308, 1e308, 0.0})), kOverflow);
  EXPECT_EQ(number(1.0, 1.0, Square(1, {1e308, 0.0, 1e308, 0.0})), kOverflow);
}

TEST(SurfaceEvaluationTest, OperandsThatAreNotFinitePassInSilence) {
  EXPECT_EQ(EvaluateSurface(kInfinity, 1.0, Square(1, {1.0, 2.0, 3.0, 0.0})), kInfinity);
  EXPECT_TRUE(std::isnan(EvaluateSurface(kInfinity, 1.0, Square(1))));
  EXPECT_TRUE(std::isnan(EvaluateSurface(1.0, kNaN, Square(1))));
  EXPECT_EQ(EvaluateSurface(1.0, 1.0, Square(1, {-kInfinity, 0.0, 0.0, 0.0})), -kInfinity);
  EXPECT_EQ(EvaluateSurface(kNaN, kNaN, Square(0, {4.0})), 4.0);
}

}  // namespace
}  // namespace vorquill21::test
