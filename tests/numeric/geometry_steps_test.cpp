#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/elementary.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/trigonometry.hpp"

namespace vorquill21 {
namespace {

constexpr double kDegree = 0x1.1df46a25ca311p-6;
constexpr double kUntouched = 77.0;

// --- The promised steps ----------------------------------------------------------------------------------

// Each result is looked at where it arises, and nothing is done in any other order than the promised one.

struct Vector {
  double x = kUntouched;
  double y = kUntouched;
  double z = kUntouched;
};

Vector DifferenceBySteps(const Vector& a, const Vector& b) {
  Vector result;
  result.x = CheckedDifference(a.x, b.x);
  result.y = CheckedDifference(a.y, b.y);
  result.z = CheckedDifference(a.z, b.z);
  return result;
}

double DotBySteps(const Vector& a, const Vector& b) {
  const double first = CheckedSum(CheckedProduct(a.x, b.x), CheckedProduct(a.y, b.y));
  return CheckedSum(first, CheckedProduct(a.z, b.z));
}

double MagnitudeBySteps(const Vector& a) {
  const double square = DotBySteps(a, a);
  return square == 0.0 ? 0.0 : HalfPower(square);
}

void CrossBySteps(const Vector& a, const Vector& b, Vector& result) {
  result.x = CheckedDifference(CheckedProduct(a.y, b.z), CheckedProduct(a.z, b.y));
  result.y = CheckedDifference(CheckedProduct(a.z, b.x), CheckedProduct(a.x, b.z));
  result.z = CheckedDifference(CheckedProduct(a.x, b.y), CheckedProduct(a.y, b.x));
}

void UnitBySteps(const Vector& a, Vector& result) {
  const double magnitude = MagnitudeBySteps(a);
  result.x = magnitude == 0.0 ? 0.0 : CheckedQuotient(a.x, magnitude);
  result.y = magnitude == 0.0 ? 0.0 : CheckedQuotient(a.y, magnitude);
  result.z = magnitude == 0.0 ? 0.0 : CheckedQuotient(a.z, magnitude);
}

double AngleBySteps(const Vector& from1, const Vector& to1, const Vector& from2, const Vector& to2) {
  const Vector d1 = DifferenceBySteps(to1, from1);
  const Vector d2 = DifferenceBySteps(to2, from2);
  const double p = DotBySteps(d1, d2);
  const double m1 = MagnitudeBySteps(d1);
  const double m2 = MagnitudeBySteps(d2);
  const double magnitudes = CheckedProduct(m1, m2);
  if (magnitudes <= 0.0) return 0.0;
  return CTrigonometry().ArcCos(CheckedQuotient(p, magnitudes)) / kDegree;
}

double DistanceBySteps(const Vector& line1, const Vector& line2, const Vector& point) {
  Vector unit;
  UnitBySteps(DifferenceBySteps(line1, line2), unit);
  Vector cross;
  CrossBySteps(DifferenceBySteps(point, line1), unit, cross);
  return MagnitudeBySteps(cross);
}

void FootBySteps(const Vector& line1, const Vector& line2, const Vector& point, Vector& foot) {
  const auto squared = [](double value) { return CheckedProduct(value, value); };
  const double a = MagnitudeBySteps(DifferenceBySteps(line1, point));
  const double b = MagnitudeBySteps(DifferenceBySteps(line2, point));
  const double c = MagnitudeBySteps(DifferenceBySteps(line1, line2));
  const double t = CheckedQuotient(CheckedDifference(CheckedSum(squared(a), squared(c)), squared(b)),
                                   CheckedProduct(2.0, c));
  const double f = CheckedQuotient(t, c);
  foot.x = CheckedSum(CheckedProduct(f, CheckedDifference(line2.x, line1.x)), line1.x);
  foot.y = CheckedSum(CheckedProduct(f, CheckedDifference(line2.y, line1.y)), line1.y);
  foot.z = CheckedSum(CheckedProduct(f, CheckedDifference(line2.z, line1.z)), line1.z);
}

void TransformBySteps(const Vector& point, const BoundedArray<double>& matrix, Vector& result) {
  const auto row = [&](std::int32_t i) {
    return DotBySteps({matrix(i, 1), matrix(i, 2), matrix(i, 3)}, point);
  };
  result.x = row(1);
  result.y = row(2);
  result.z = row(3);
}

void RotationBySteps(const Vector& degrees, BoundedArray<double>& matrix) {
  const double sx = Sine(degrees.x * kDegree);
  const double cx = Cosine(degrees.x * kDegree);
  const double sy = Sine(degrees.y * kDegree);
  const double cy = Cosine(degrees.y * kDegree);
  const double sz = Sine(degrees.z * kDegree);
  const double cz = Cosine(degrees.z * kDegree);
  matrix.ReDim({1, 3}, {1, 3});
  matrix(1, 1) = cz * cy;
  matrix(1, 2) = cz * sy * sx - sz * cx;
  matrix(1, 3) = cz * sy * cx + sz * sx;
  matrix(2, 1) = sz * cy;
  matrix(2, 2) = sz * sy * sx + cz * cx;
  matrix(2, 3) = sz * sy * cx - cz * sx;
  matrix(3, 1) = -sy;
  matrix(3, 2) = sx * cy;
  matrix(3, 3) = cx * cy;
}

void ProductBySteps(const BoundedArray<double>& a, const BoundedArray<double>& b,
                    BoundedArray<double>& product) {
  const std::int32_t rows = a.UpperBound(1);
  const std::int32_t terms = a.UpperBound(2);
  const std::int32_t columns = b.UpperBound(2);
  product.ReDim({1, rows}, {1, columns});
  for (std::int32_t i = 1; i <= rows; ++i) {
    for (std::int32_t j = 1; j <= columns; ++j) {
      double sum = 0.0;
      for (std::int32_t k = 1; k <= terms; ++k) sum = CheckedSum(sum, CheckedProduct(a(i, k), b(k, j)));
      product(i, j) = sum;
    }
  }
}

// --- The comparison --------------------------------------------------------------------------------------

std::uint64_t Bits(double value) {
  return std::isnan(value) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(value);
}

/// What a call leaves: the number that it raised, and every by-reference result.
struct Outcome {
  std::int32_t raised = 0;
  std::vector<std::uint64_t> results;
};

template <typename Operation>
Outcome OutcomeOf(Operation operation) {
  Vector result;
  Outcome outcome;
  outcome.raised = test::RaisedNumber([&] { operation(result); });
  outcome.results = {Bits(result.x), Bits(result.y), Bits(result.z)};
  return outcome;
}

class GeometryStepsTest : public testing::Test {
 protected:
  /// Plain numbers mostly, often a few of them equal; some so large or small that a square leaves the range.
  double Number() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kOdd[] = {0.0,      -0.0,      1.0,   -1.0,   0x1p-1074, 0x1p-540, 0x1p500,
                               0x1p1023, -0x1p1023, 1e200, -1e200, kInfinity, kNaN};
    if (random_() % 12 == 0) return kOdd[random_() % std::size(kOdd)];
    if (random_() % 3 == 0) return static_cast<double>(random_() % 7) - 3.0;
    return normal_(random_);
  }

  Vector NextVector() {
    const double x = Number();
    const double y = Number();
    return {x, y, Number()};
  }

  template <typename Operation, typename Steps>
  void ExpectSame(Operation operation, Steps steps) {
    const Outcome actual = OutcomeOf(operation);
    const Outcome expected = OutcomeOf(steps);
    EXPECT_EQ(actual.raised, expected.raised);
    EXPECT_EQ(actual.results, expected.results);
    faults_ += expected.raised != 0 ? 1 : 0;
  }

  test::FakePlatform fake_;
  CGeometry geometry_{fake_.platform};
  std::mt19937_64 random_{41};
  std::normal_distribution<double> normal_;
  int faults_ = 0;
};

constexpr int kRounds = 20'000;

TEST_F(GeometryStepsTest, VectorsComeToWhatTheirStepsComeTo) {
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const Vector a = NextVector();
    const Vector b = NextVector();
    ExpectSame([&](Vector& r) { geometry_.VectorAdd3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x, r.y, r.z); },
               [&](Vector& r) {
                 r.x = CheckedSum(a.x, b.x);
                 r.y = CheckedSum(a.y, b.y);
                 r.z = CheckedSum(a.z, b.z);
               });
    ExpectSame([&](Vector& r) { geometry_.VectorSubtract3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x, r.y, r.z); },
               [&](Vector& r) {
                 r.x = CheckedDifference(a.x, b.x);
                 r.y = CheckedDifference(a.y, b.y);
                 r.z = CheckedDifference(a.z, b.z);
               });
    ExpectSame(
        [&](Vector& r) { geometry_.VectorCrossProduct3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x, r.y, r.z); },
        [&](Vector& r) { CrossBySteps(a, b, r); });
    ExpectSame([&](Vector& r) { geometry_.VectorDotProduct3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x); },
               [&](Vector& r) { r.x = DotBySteps(a, b); });
    ExpectSame([&](Vector& r) { r.x = geometry_.VectorMagnitude3d(a.x, a.y, a.z); },
               [&](Vector& r) { r.x = MagnitudeBySteps(a); });
    ExpectSame([&](Vector& r) { geometry_.UnitVector3d(a.x, a.y, a.z, r.x, r.y, r.z); },
               [&](Vector& r) { UnitBySteps(a, r); });
  }
  EXPECT_GT(faults_, 100);
}

TEST_F(GeometryStepsTest, LinesComeToWhatTheirStepsComeTo) {
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const Vector a = NextVector();
    const Vector b = random_() % 20 == 0 ? a : NextVector();
    const Vector c = NextVector();
    const Vector d = NextVector();
    ExpectSame(
        [&](Vector& r) {
          r.x = geometry_.AngleBetweenLines(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, d.x, d.y, d.z);
        },
        [&](Vector& r) { r.x = AngleBySteps(a, b, c, d); });
    ExpectSame([&](Vector& r) { r.x = geometry_.AngleBetweenVectors(a.x, a.y, a.z, b.x, b.y, b.z); },
               [&](Vector& r) {
                 r.x = AngleBySteps({0, 0, 0}, a, {0, 0, 0}, b);
               });
    ExpectSame(
        [&](Vector& r) { r.x = geometry_.LineDistanceToPoint(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z); },
        [&](Vector& r) { r.x = DistanceBySteps(a, b, c); });
    ExpectSame(
        [&](Vector& r) {
          geometry_.IntersectNormalPointToLine(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, r.x, r.y, r.z);
        },
        [&](Vector& r) { FootBySteps(a, b, c, r); });
  }
  EXPECT_GT(faults_, 100);
}

TEST_F(GeometryStepsTest, RotationsComeToWhatTheirStepsComeTo) {
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const Vector degrees{Number() * 90.0, Number() * 90.0, Number() * 90.0};
    BoundedArray<double> matrix;
    BoundedArray<double> expected;
    geometry_.BuildTransformationMatrix(degrees.x, degrees.y, degrees.z, matrix);
    RotationBySteps(degrees, expected);
    ASSERT_EQ(matrix.BoundsOf(1), (Bounds{1, 3}));
    ASSERT_EQ(matrix.BoundsOf(2), (Bounds{1, 3}));
    for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(Bits(matrix.Elements()[i]), Bits(expected.Elements()[i]));

    for (double& element : matrix.Elements()) {
      if (random_() % 10 == 0) element = Number();
    }
    const Vector point = NextVector();
    ExpectSame([&](Vector& r) { geometry_.TransformPoint(point.x, point.y, point.z, matrix, r.x, r.y, r.z); },
               [&](Vector& r) { TransformBySteps(point, matrix, r); });
  }
  EXPECT_GT(faults_, 100);
}

TEST_F(GeometryStepsTest, ProductsOfMatricesComeToWhatTheirStepsComeTo) {
  const auto below = [this](std::uint64_t count) { return static_cast<std::int32_t>(random_() % count); };
  int missing = 0;
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    // Mostly from an index up to 1 on, and with as many rows in the second matrix as the first has columns.
    const auto bounds = [&](std::int32_t upper) { return Bounds{std::min(1 - below(3), upper), upper}; };
    const std::int32_t terms = below(12);
    BoundedArray<double> a(bounds(1 + below(9)), bounds(terms));
    BoundedArray<double> b(bounds(below(10) == 0 ? below(12) : terms), bounds(below(12)));
    if (below(20) == 0) a.ReDim({2, 3}, {below(3), 3});
    if (below(20) == 0) b.ReDim({below(3), 3}, {1, 1 + below(9)});
    for (BoundedArray<double>* matrix : {&a, &b}) {
      for (double& element : matrix->Elements()) element = below(8) == 0 ? Number() : normal_(random_);
    }
    BoundedArray<double> product({0, 1}, {0, 1});
    BoundedArray<double> expected = product;
    const std::int32_t raised = test::RaisedNumber([&] { ProductBySteps(a, b, expected); });
    EXPECT_EQ(test::RaisedNumber([&] { geometry_.MatrixMultiply(a, b, product); }), raised);
    EXPECT_EQ(product.BoundsOf(1), expected.BoundsOf(1));
    EXPECT_EQ(product.BoundsOf(2), expected.BoundsOf(2));
    EXPECT_TRUE(std::ranges::equal(product.Elements(), expected.Elements(), {}, Bits, Bits));

    BoundedArray<double>& factor = round % 2 == 0 ? a : b;
    const bool isReplaced = expected.LowerBound(1) == 1;
    const BoundedArray<double> after = isReplaced ? expected : factor;
    EXPECT_EQ(test::RaisedNumber([&] { geometry_.MatrixMultiply(a, b, factor); }), raised);
    EXPECT_EQ(factor.BoundsOf(2), after.BoundsOf(2));
    EXPECT_TRUE(std::ranges::equal(factor.Elements(), after.Elements(), {}, Bits, Bits));

    faults_ += raised == kOverflow ? 1 : 0;
    missing += raised == kSubscriptOutOfRange ? 1 : 0;
  }
  EXPECT_GT(faults_, 100);
  EXPECT_GT(missing, 100);
}

}  // namespace
}  // namespace vorquill21
