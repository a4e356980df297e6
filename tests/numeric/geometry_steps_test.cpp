#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "tests/support/promised_steps.hpp"
#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/elementary.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/trigonometry.hpp"

namespace vorquill21 {
namespace {

using test::BitsOrNaN;

constexpr double kDegree = 0x1.1df46a25ca311p-6;
constexpr double kUntouched = 77.0;

// --- The promised steps ----------------------------------------------------------------------------------

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

class GeometryStepsTest : public test::PromisedStepsTest<Vector> {
 protected:
  GeometryStepsTest() : PromisedStepsTest(41, 12) {}

  Vector NextVector() {
    const double x = Number();
    const double y = Number();
    return {x, y, Number()};
  }

  CGeometry geometry_{fake_.platform};
};

constexpr int kRounds = 20'000;

TEST_F(GeometryStepsTest, VectorsComeToWhatTheirStepsComeTo) {
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const Vector a = NextVector();
    const Vector b = NextVector();
    EXPECT_TRUE(Agree([&](Vector& r) { geometry_.VectorAdd3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x, r.y, r.z); },
                      [&](Vector& r) {
                        r.x = CheckedSum(a.x, b.x);
                        r.y = CheckedSum(a.y, b.y);
                        r.z = CheckedSum(a.z, b.z);
                      }));
    EXPECT_TRUE(
        Agree([&](Vector& r) { geometry_.VectorSubtract3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x, r.y, r.z); },
              [&](Vector& r) {
                r.x = CheckedDifference(a.x, b.x);
                r.y = CheckedDifference(a.y, b.y);
                r.z = CheckedDifference(a.z, b.z);
              }));
    EXPECT_TRUE(
        Agree([&](Vector& r) { geometry_.VectorCrossProduct3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x, r.y, r.z); },
              [&](Vector& r) { CrossBySteps(a, b, r); }));
    EXPECT_TRUE(Agree([&](Vector& r) { geometry_.VectorDotProduct3d(a.x, a.y, a.z, b.x, b.y, b.z, r.x); },
                      [&](Vector& r) { r.x = DotBySteps(a, b); }));
    EXPECT_TRUE(Agree([&](Vector& r) { r.x = geometry_.VectorMagnitude3d(a.x, a.y, a.z); },
                      [&](Vector& r) { r.x = MagnitudeBySteps(a); }));
    EXPECT_TRUE(Agree([&](Vector& r) { geometry_.UnitVector3d(a.x, a.y, a.z, r.x, r.y, r.z); },
                      [&](Vector& r) { UnitBySteps(a, r); }));
  }
  EXPECT_GT(Faults(), 100);
}

TEST_F(GeometryStepsTest, LinesComeToWhatTheirStepsComeTo) {
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const Vector a = NextVector();
    const Vector b = Below(20) == 0 ? a : NextVector();
    const Vector c = NextVector();
    const Vector d = NextVector();
    EXPECT_TRUE(Agree(
        [&](Vector& r) {
          r.x = geometry_.AngleBetweenLines(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, d.x, d.y, d.z);
        },
        [&](Vector& r) { r.x = AngleBySteps(a, b, c, d); }));
    EXPECT_TRUE(Agree([&](Vector& r) { r.x = geometry_.AngleBetweenVectors(a.x, a.y, a.z, b.x, b.y, b.z); },
                      [&](Vector& r) {
                        r.x = AngleBySteps({0, 0, 0}, a, {0, 0, 0}, b);
                      }));
    EXPECT_TRUE(Agree(
        [&](Vector& r) { r.x = geometry_.LineDistanceToPoint(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z); },
        [&](Vector& r) { r.x = DistanceBySteps(a, b, c); }));
    EXPECT_TRUE(Agree(
        [&](Vector& r) {
          geometry_.IntersectNormalPointToLine(a.x, a.y, a.z, b.x, b.y, b.z, c.x, c.y, c.z, r.x, r.y, r.z);
        },
        [&](Vector& r) { FootBySteps(a, b, c, r); }));
  }
  EXPECT_GT(Faults(), 100);
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
    for (std::size_t i = 0; i < 9; ++i) {
      EXPECT_EQ(BitsOrNaN(matrix.Elements()[i]), BitsOrNaN(expected.Elements()[i]));
    }

    for (double& element : matrix.Elements()) {
      if (Below(10) == 0) element = Number();
    }
    const Vector point = NextVector();
    EXPECT_TRUE(
        Agree([&](Vector& r) { geometry_.TransformPoint(point.x, point.y, point.z, matrix, r.x, r.y, r.z); },
              [&](Vector& r) { TransformBySteps(point, matrix, r); }));
  }
  EXPECT_GT(Faults(), 100);
}

TEST_F(GeometryStepsTest, ProductsOfMatricesComeToWhatTheirStepsComeTo) {
  const auto below = [this](std::size_t count) { return static_cast<std::int32_t>(Below(count)); };
  int faults = 0;
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
      for (double& element : matrix->Elements()) element = Number();
    }
    BoundedArray<double> product({0, 1}, {0, 1});
    BoundedArray<double> expected = product;
    const std::int32_t raised = test::RaisedNumber([&] { ProductBySteps(a, b, expected); });
    EXPECT_EQ(test::RaisedNumber([&] { geometry_.MatrixMultiply(a, b, product); }), raised);
    EXPECT_EQ(product.BoundsOf(1), expected.BoundsOf(1));
    EXPECT_EQ(product.BoundsOf(2), expected.BoundsOf(2));
    EXPECT_TRUE(std::ranges::equal(product.Elements(), expected.Elements(), {}, BitsOrNaN, BitsOrNaN));

    BoundedArray<double>& factor = round % 2 == 0 ? a : b;
    const bool isReplaced = expected.LowerBound(1) == 1;
    const BoundedArray<double> after = isReplaced ? expected : factor;
    EXPECT_EQ(test::RaisedNumber([&] { geometry_.MatrixMultiply(a, b, factor); }), raised);
    EXPECT_EQ(factor.BoundsOf(2), after.BoundsOf(2));
    EXPECT_TRUE(std::ranges::equal(factor.Elements(), after.Elements(), {}, BitsOrNaN, BitsOrNaN));

    faults += raised == kOverflow ? 1 : 0;
    missing += raised == kSubscriptOutOfRange ? 1 : 0;
  }
  EXPECT_GT(faults, 100);
  EXPECT_GT(missing, 100);
}

}  // namespace
}  // namespace vorquill21
