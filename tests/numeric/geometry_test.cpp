#include "vorquill21/numeric/geometry.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/self_test.hpp"
#include "tests/support/short_of_memory.hpp"

namespace vorquill21 {

VORQUILL21_OPEN_SELF_TEST(CGeometry);

namespace {

using test::ExpectNumberOrErrorSeven;
using test::RaisedNumber;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

struct Vector {
  double x = 77.0;
  double y = 77.0;
  double z = 77.0;
  friend bool operator==(const Vector&, const Vector&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Vector& v) {
    return out << std::hexfloat << '(' << v.x << ", " << v.y << ", " << v.z << ')';
  }
};

constexpr Vector kUntouched;

class CGeometryTest : public testing::Test {
 protected:
  double Angle(Vector from1, Vector to1, Vector from2, Vector to2) const {
    return geometry.AngleBetweenLines(from1.x, from1.y, from1.z, to1.x, to1.y, to1.z,  //
                                      from2.x, from2.y, from2.z, to2.x, to2.y, to2.z);
  }
  double Distance(Vector line1, Vector line2, Vector point) const {
    return geometry.LineDistanceToPoint(line1.x, line1.y, line1.z, line2.x, line2.y, line2.z,  //
                                        point.x, point.y, point.z);
  }
  Vector Foot(Vector line1, Vector line2, Vector point) const {
    Vector foot;
    geometry.IntersectNormalPointToLine(line1.x, line1.y, line1.z, line2.x, line2.y, line2.z,  //
                                        point.x, point.y, point.z, foot.x, foot.y, foot.z);
    return foot;
  }
  using Operation = void (CGeometry::*)(double, double, double, double, double, double, double&, double&,
                                        double&) const;
  Vector Of(Operation operation, Vector a, Vector b) const {
    Vector result;
    (geometry.*operation)(a.x, a.y, a.z, b.x, b.y, b.z, result.x, result.y, result.z);
    return result;
  }
  BoundedArray<double> Rotation(double x, double y, double z) const {
    BoundedArray<double> matrix;
    geometry.BuildTransformationMatrix(x, y, z, matrix);
    return matrix;
  }
  Vector Turned(const BoundedArray<double>& matrix, Vector point) const {
    Vector turned;
    geometry.TransformPoint(point.x, point.y, point.z, matrix, turned.x, turned.y, turned.z);
    return turned;
  }

  test::FakePlatform fake;
  CGeometry geometry{fake.platform};
};

BoundedArray<double> Matrix(Bounds rows, Bounds columns, std::initializer_list<double> elements) {
  BoundedArray<double> matrix(rows, columns);
  std::ranges::copy(elements, matrix.Elements().begin());
  return matrix;
}

// --- Vectors ---------------------------------------------------------------------------------------------

TEST_F(CGeometryTest, SumDifferenceAndProducts) {
  const Vector a{1, 2, 3};
  const Vector b{4, -5, 6.5};
  EXPECT_EQ(Of(&CGeometry::VectorAdd3d, a, b), (Vector{5, -3, 9.5}));
  EXPECT_EQ(Of(&CGeometry::VectorSubtract3d, a, b), (Vector{-3, 7, -3.5}));
  EXPECT_EQ(Of(&CGeometry::VectorCrossProduct3d, a, b), (Vector{28, 5.5, -13}));
  double dotProduct = 0.0;
  geometry.VectorDotProduct3d(1, 2, 3, 4, -5, 6.5, dotProduct);
  EXPECT_EQ(dotProduct, 13.5);
}

TEST_F(CGeometryTest, ProductsAreAddedInTheirOrderAndNotFused) {
  double dotProduct = 0.0;
  geometry.VectorDotProduct3d(1e16, 1, -1e16, 1, 1, 1, dotProduct);
  EXPECT_EQ(dotProduct, 0.0);
  geometry.VectorDotProduct3d(0.1, -1, 0, 10, 1, 0, dotProduct);
  EXPECT_EQ(dotProduct, 0.0);
}

TEST_F(CGeometryTest, Magnitude) {
  EXPECT_EQ(geometry.VectorMagnitude3d(0, 0, 0), 0.0);
  EXPECT_EQ(geometry.VectorMagnitude3d(3, 4, 12), 13.0);
  EXPECT_EQ(geometry.VectorMagnitude3d(1, 1, 0), 0x1.6a09e667f3bcdp+0);
  EXPECT_EQ(geometry.VectorMagnitude3d(1e-200, 1e-200, 0), 0.0);
}

TEST_F(CGeometryTest, UnitVector) {
  Vector unit;
  geometry.UnitVector3d(0, 0, 0, unit.x, unit.y, unit.z);
  EXPECT_EQ(unit, (Vector{0, 0, 0}));
  geometry.UnitVector3d(3, -4, 12, unit.x, unit.y, unit.z);
  EXPECT_EQ(unit, (Vector{3.0 / 13.0, -4.0 / 13.0, 12.0 / 13.0}));
}

TEST_F(CGeometryTest, OverflowKeepsTheComponentsBeforeIt) {
  Vector sum;
  EXPECT_EQ(RaisedNumber([&] { geometry.VectorAdd3d(1, kLargest, 1, 2, kLargest, 2, sum.x, sum.y, sum.z); }),
            kOverflow);
  EXPECT_EQ(sum, (Vector{3, 77, 77}));
  EXPECT_EQ(RaisedNumber([&] { geometry.VectorMagnitude3d(1, 1e200, 1); }), kOverflow);
  double dotProduct = 77.0;
  EXPECT_EQ(RaisedNumber([&] { geometry.VectorDotProduct3d(1e200, 1, -1e200, 1e200, 1, 1e200, dotProduct); }),
            kOverflow);
  EXPECT_EQ(dotProduct, 77.0);
  Vector cross;
  EXPECT_EQ(RaisedNumber(
                [&] { geometry.VectorCrossProduct3d(0, 0, 1e200, 1e200, 1, 1, cross.x, cross.y, cross.z); }),
            kOverflow);
  EXPECT_EQ(cross, (Vector{-1e200, 77, 77}));
  EXPECT_EQ(geometry.VectorMagnitude3d(kInfinity, 1, 1), kInfinity);
}

// --- Angles ----------------------------------------------------------------------------------------------

TEST_F(CGeometryTest, AnglesAreInDegreesOfTheClassConstant) {
  struct Row {
    Vector line1[2];
    Vector line2[2];
    double degrees;
  };
  const Row rows[] = {
      {{{0, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {1, 2, 0}}, 0x1.fb7ac671b2780p+5},
      {{{0, 0, 0}, {1, 1, 0}}, {{0, 0, 0}, {1, 1, 1}}, 0x1.1a1d7855e86f0p+5},
      {{{1, 0, 0}, {0, 2, 2}}, {{0, 0, 0}, {1, 2, 2}}, 0x1.378a1ea536b09p+5},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, 0.001, 0}}, 0x1.67c55441d1848p+6},
      {{{0.1, 0.2, 0.3}, {1.1, -0.7, 2.3}}, {{1, 1, 1}, {0.4, 0.5, 9.1}}, 0x1.18b5e22c8d0f3p+5},
  };
  for (const Row& row : rows)
    EXPECT_EQ(Angle(row.line1[0], row.line1[1], row.line2[0], row.line2[1]), row.degrees);
}

TEST_F(CGeometryTest, AnglesOfLinesInManyDirections) {
  struct Row {
    Vector line1[2];
    Vector line2[2];
    double degrees;
  };
  const Row rows[] = {
      {{{0, 0, 0}, {1, 2, 0}}, {{0, 0, 0}, {1, 0, 0}}, 63.434},
      {{{1, 1, 3}, {2, 2, 3}}, {{0, 0, 2}, {1, 1, 3}}, 35.264},
      {{{0, 0, 2}, {1, 1, 2}}, {{0, 0, 2}, {1, 1, 3}}, 35.264},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, 0, 0}}, 90},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, -0.001, 0}}, 90.057},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, -1, 0}}, 135},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {0.001, -1, 0}}, 179.942},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {-0.001, -1, 0}}, 179.942},
      {{{0, 0, 0}, {0, 2, 0}}, {{0, 0, 0}, {0, -2, 0}}, 180},
      {{{0, 0, 0}, {2.1, 1, 1}}, {{0, 0, 0}, {2.1, 1, 1}}, 0},
  };
  for (const Row& row : rows) {
    EXPECT_NEAR(Angle(row.line1[0], row.line1[1], row.line2[0], row.line2[1]), row.degrees, 0.001);
  }
  EXPECT_NEAR(geometry.AngleBetweenVectors(-1, 2, 2, 1, 2, 2), 38.942, 0.001);
}

TEST_F(CGeometryTest, TurningOneLineRoundGivesTheOtherAngle) {
  const Vector points[] = {{1, 2, 3}, {-4, 0.5, 9}, {0, 0, 7}, {3, -8, 2}};
  const double angle = Angle(points[0], points[1], points[2], points[3]);
  EXPECT_NEAR(Angle(points[1], points[0], points[2], points[3]), 180 - angle, 1e-7);
  EXPECT_NEAR(Angle(points[0], points[1], points[3], points[2]), 180 - angle, 1e-7);
  EXPECT_NEAR(Angle(points[1], points[0], points[3], points[2]), angle, 1e-7);
}

TEST_F(CGeometryTest, DeliberateAngleBetweenVectorsIsAHairLessForStraightAndRightAngles) {
  EXPECT_EQ(geometry.AngleBetweenVectors(1, 0, 0, -1, 0, 0), 179.9999999764967);
  EXPECT_EQ(geometry.AngleBetweenVectors(0, 1, 0, 1, 0, 0), 89.99999998824835);
}

TEST_F(CGeometryTest, LinesWithoutLengthHaveNoAngle) {
  EXPECT_EQ(Angle({1, 1, 1}, {1, 1, 1}, {0, 0, 0}, {1, 2, 3}), 0.0);
  EXPECT_EQ(geometry.AngleBetweenVectors(1, 2, 3, 0, 0, 0), 0.0);
}

TEST_F(CGeometryTest, EqualLinesHaveNoAngleHoweverTheCosineRounds) {
  EXPECT_EQ(geometry.AngleBetweenVectors(1.1234567, 1.1234567, 1.1234567, 1.1234567, 1.1234567, 1.1234567),
            0.0);
  std::mt19937 random(5);
  std::uniform_real_distribution<double> uniform(-10, 10);
  for (int i = 0; i < 1000; ++i) {
    const Vector v{uniform(random), uniform(random), uniform(random)};
    EXPECT_LT(geometry.AngleBetweenVectors(v.x, v.y, v.z, v.x, v.y, v.z), 2e-6);
  }
}

TEST_F(CGeometryTest, AnglesOverflowWhereTheLengthsDo) {
  EXPECT_EQ(RaisedNumber([&] { geometry.AngleBetweenVectors(1e200, 0, 0, 1, 0, 0); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] {
              Angle({-kLargest, 0, 0}, {kLargest, 0, 0}, {0, 0, 0}, {1, 0, 0});
            }),
            kOverflow);
}

// --- Points and lines ------------------------------------------------------------------------------------

TEST_F(CGeometryTest, DistanceOfAPointFromALine) {
  EXPECT_EQ(Distance({1, 1, 1}, {3, 0, 4}, {1, 2, 1}), 0x1.ed6023ba6dba2p-1);
  EXPECT_EQ(Distance({.1, .2, .3}, {1.7, -2.2, 5.1}, {9, 8, 7}), 0x1.9569ef99ed871p+3);
  EXPECT_EQ(Distance({0, 0, 0}, {10, 0, 0}, {12, 1, 0}), 1.0);
}

TEST_F(CGeometryTest, DeliberateLineDistanceToPointIsZeroForALineOfEqualPoints) {
  EXPECT_EQ(Distance({1, 2, 3}, {1, 2, 3}, {7, 8, 9}), 0.0);
}

TEST_F(CGeometryTest, FootOfThePerpendicular) {
  EXPECT_EQ(Foot({0, 0, 0}, {10, 0, 0}, {3, 5, 0}), (Vector{3, 0, 0}));
  EXPECT_EQ(Foot({0, 0, 0}, {10, 0, 0}, {12, 1, 0}), (Vector{12, 0, 0}));
  EXPECT_EQ(Foot({.1, .2, .3}, {1.7, -2.2, 5.1}, {9, 8, 7}),
            (Vector{0x1.83227b4c470dep+0, -0x1.eb1a1f58d0fb5p+0, 0x1.2259dc79354a6p+2}));
}

TEST_F(CGeometryTest, DeliberateIntersectNormalPointToLineDividesByZeroForALineOfEqualPoints) {
  Vector foot;
  for (const Vector point : {Vector{7, 8, 9}, Vector{1, 2, 3}}) {
    EXPECT_EQ(RaisedNumber([&] {
                geometry.IntersectNormalPointToLine(1, 2, 3, 1, 2, 3, point.x, point.y, point.z, foot.x,
                                                    foot.y, foot.z);
              }),
              kDivisionByZero);
    EXPECT_EQ(foot, kUntouched);
  }
}

TEST_F(CGeometryTest, FootOverflowsWhereASquareDoes) {
  Vector foot;
  const auto operation = [&] {
    geometry.IntersectNormalPointToLine(0, 0, 0, 1, 0, 0, 0, 1e160, 0, foot.x, foot.y, foot.z);
  };
  EXPECT_EQ(RaisedNumber(operation), kOverflow);
  EXPECT_EQ(foot, kUntouched);
}

// --- Matrices --------------------------------------------------------------------------------------------

TEST_F(CGeometryTest, RotationsAboutXThenYThenZ) {
  const BoundedArray<double> matrix = Rotation(30, 45, 60);
  EXPECT_EQ(matrix, Matrix({1, 3}, {1, 3},
                           {0x1.6a09e665e4035p-2, -0x1.257d86664a554p-1, 0x1.7a7847e3525eep-1,  //
                            0x1.3988e1407248ap-1, 0x1.7a7847e2ce44ap-1, 0x1.1f0ed99dbb10cp-2,   //
                            -0x1.6a09e66893332p-1, 0x1.6a09e6680c681p-2, 0x1.3988e13fd2d24p-1}));
  EXPECT_EQ(Rotation(-12.5, 200, 1e5),
            Matrix({1, 3}, {1, 3},
                   {-0x1.4e2f485d086dbp-3, 0x1.f2d9de717f694p-1, 0x1.3dc8b301be2aap-3,  //
                    0x1.d9d032660b6cfp-1, 0x1.8bcc1365047dap-4, 0x1.7737f4c76e978p-2,   //
                    0x1.5e3a874ffc6c6p-2, 0x1.a08935dc534d4p-3, -0x1.d5b7d50b85eeep-1}));
  EXPECT_EQ(Turned(matrix, {1.1, -2.2, 3.3}),
            (Vector{0x1.05b8040db47edp+2, -0x1.c3318360d3d60p-6, 0x1.dc5bd8da437c0p-2}));
}

TEST_F(CGeometryTest, RightAnglesAreWithinRoundingOfTheConstant) {
  EXPECT_EQ(Rotation(90, 90, 90), Matrix({1, 3}, {1, 3},
                                         {0x1.8d50c58c67bb6p-65, 0, 1,   //
                                          -0x1.c306f72cece67p-33, 1, 0,  //
                                          -1, -0x1.c306f72cece67p-33, 0x1.8d50c58c67bb6p-65}));
  EXPECT_EQ(Turned(Rotation(0, 90, 0), {1, 0, 0}), (Vector{-0x1.c306f72cece67p-33, 0, -1}));
}

TEST_F(CGeometryTest, PointsTurnByTheRightHandRule) {
  constexpr double kDegree = 0x1.1df46a25ca311p-6;
  struct Row {
    Vector degrees;
    Vector point;
    Vector turned;
  };
  const Row rows[] = {
      {{0, 0, 0}, {100, 0, 0}, {100, 0, 0}},
      {{1, 0, 0}, {100, 0, 0}, {100, 0, 0}},
      {{0, 1, 0}, {100, 0, 0}, {100 * std::cos(kDegree), 0, -1.7452}},
      {{0, 0, 1}, {100, 0, 0}, {100 * std::cos(kDegree), 100 * std::sin(kDegree), 0}},
      {{1, 1, 0}, {100, 0, 0}, {99.9847, 0, -1.7452}},
      {{0, 45, 45}, {100, 0, 0}, {50, 50, -70.7106}},
      {{0, 0, 0}, {100, 200, 0}, {100, 200, 0}},
      {{1, 0, 0}, {100, 200, 0}, {100, 199.9695, 3.4905}},
      {{0, 1, 0}, {100, 200, 0}, {99.9848, 200, -1.7452}},
      {{30, 30, 0}, {100, 200, 0}, {136.6025, 173.2051, 36.6025}},
      {{90, 90, 90}, {100, 0, 0}, {0, 0, -100}},
      {{90, 90, 90}, {0, 100, 0}, {0, 100, 0}},
      {{90, 90, 90}, {0, 0, 100}, {100, 0, 0}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.degrees << row.point);
    const Vector turned = Turned(Rotation(row.degrees.x, row.degrees.y, row.degrees.z), row.point);
    EXPECT_NEAR(turned.x, row.turned.x, 0.001);
    EXPECT_NEAR(turned.y, row.turned.y, 0.001);
    EXPECT_NEAR(turned.z, row.turned.z, 0.001);
  }
  EXPECT_EQ(Turned(Rotation(1, 0, 0), {100, 0, 0}), (Vector{100, 0, 0}));
  EXPECT_EQ(Turned(Rotation(0, 1, 0), {100, 0, 0}).y, 0.0);
  EXPECT_EQ(Turned(Rotation(0, 0, 0), {100, 200, 0}), (Vector{100, 200, 0}));

  Vector point{100, 200, 300};
  const BoundedArray<double> quarter = Rotation(90, 90, 90);
  for (int i = 0; i < 4; ++i) {
    geometry.TransformPoint(point.x, point.y, point.z, quarter, point.x, point.y, point.z);
  }
  EXPECT_NEAR(point.x, 100, 0.001);
  EXPECT_NEAR(point.y, 200, 0.001);
  EXPECT_NEAR(point.z, 300, 0.001);
}

TEST_F(CGeometryTest, NoTurnIsTheIdentityWhateverTheArrayWas) {
  const BoundedArray<double> identity = Matrix({1, 3}, {1, 3}, {1, 0, 0, 0, 1, 0, 0, 0, 1});
  for (BoundedArray<double> matrix :
       {BoundedArray<double>(), BoundedArray<double>::Empty(), Matrix({0, 2}, {0, 2}, {9, 9, 9, 9}),
        Matrix({1, 3}, {1, 3}, {9, 9, 9, 9, 9, 9, 9, 9, 9}), BoundedArray<double>({1, 3}, {1, 3}, {1, 3})}) {
    geometry.BuildTransformationMatrix(0, 0, 0, matrix);
    EXPECT_EQ(matrix, identity);
  }
}

TEST_F(CGeometryTest, InfiniteAnglesPass) {
  EXPECT_TRUE(std::isnan(Rotation(kInfinity, 0, 0)(2, 2)));
}

TEST_F(CGeometryTest, TransformPointNeedsTheIndicesOneToThree) {
  const BoundedArray<double> larger = [] {
    BoundedArray<double> matrix({-1, 4}, {0, 3});
    for (std::int32_t i = 1; i <= 3; ++i) matrix(i, i) = i;
    return matrix;
  }();
  EXPECT_EQ(Turned(larger, {1, 1, 1}), (Vector{1, 2, 3}));
  Vector point;
  for (const BoundedArray<double>& matrix :
       {BoundedArray<double>({0, 2}, {0, 2}), BoundedArray<double>({2, 4}, {1, 3}), BoundedArray<double>(),
        BoundedArray<double>(Bounds{1, 9}), BoundedArray<double>({1, 3}, {1, 3}, {1, 3})}) {
    const auto operation = [&] { geometry.TransformPoint(1, 2, 3, matrix, point.x, point.y, point.z); };
    EXPECT_EQ(RaisedNumber(operation), kSubscriptOutOfRange);
    EXPECT_EQ(point, kUntouched);
  }
  const BoundedArray<double> twoRows = Matrix({1, 2}, {1, 3}, {1, 0, 0, 0, 1, 0});
  EXPECT_EQ(RaisedNumber([&] { geometry.TransformPoint(1, 2, 3, twoRows, point.x, point.y, point.z); }),
            kSubscriptOutOfRange);
  EXPECT_EQ(point, (Vector{1, 2, 77}));
}

TEST_F(CGeometryTest, TransformPointKeepsTheComponentsBeforeAnOverflow) {
  const BoundedArray<double> matrix = Matrix({1, 3}, {1, 3}, {1, 0, 0, 1e200, 0, 0, 0, 0, 1});
  Vector point;
  EXPECT_EQ(RaisedNumber([&] { geometry.TransformPoint(1e200, 2, 3, matrix, point.x, point.y, point.z); }),
            kOverflow);
  EXPECT_EQ(point, (Vector{1e200, 77, 77}));
  EXPECT_EQ(Turned(Matrix({1, 3}, {1, 3}, {kInfinity, 0, 0, 0, 1, 0, 0, 0, 1}), {1, 2, 3}),
            (Vector{kInfinity, 2, 3}));
}

TEST_F(CGeometryTest, ProductOfMatrices) {
  BoundedArray<double> product;
  geometry.MatrixMultiply(Matrix({1, 2}, {1, 3}, {1, 2, 3, 4, 5, 6}),
                          Matrix({1, 3}, {1, 2}, {1, 2, 3, 4, 5, 6}), product);
  EXPECT_EQ(product, Matrix({1, 2}, {1, 2}, {22, 28, 49, 64}));
}

TEST_F(CGeometryTest, DeliberateMatrixMultiplyLeavesOutIndexZeroAndFurtherRows) {
  const BoundedArray<double> a = Matrix({0, 1}, {0, 2}, {9, 9, 9, 9, 1, 2});
  const BoundedArray<double> b = Matrix({0, 3}, {0, 1}, {9, 9, 9, 3, 9, 4, 9, 9});
  BoundedArray<double> product;
  geometry.MatrixMultiply(a, b, product);
  EXPECT_EQ(product, Matrix({1, 1}, {1, 1}, {11}));
}

TEST_F(CGeometryTest, ProductMayReplaceAFactor) {
  BoundedArray<double> a = Matrix({1, 2}, {1, 2}, {1, 2, 3, 4});
  geometry.MatrixMultiply(a, a, a);
  EXPECT_EQ(a, Matrix({1, 2}, {1, 2}, {7, 10, 15, 22}));
  const BoundedArray<double> left = Matrix({1, 2}, {1, 2}, {0, 1, 1, 0});
  BoundedArray<double> right = Matrix({1, 2}, {1, 1}, {1, 2});
  geometry.MatrixMultiply(left, right, right);
  EXPECT_EQ(right, Matrix({1, 2}, {1, 1}, {2, 1}));
}

TEST_F(CGeometryTest, MissingElementsAreOutOfRange) {
  const BoundedArray<double> a = Matrix({1, 2}, {1, 3}, {1, 2, 3, 4, 5, 6});
  BoundedArray<double> product = Matrix({5, 5}, {5, 5}, {7});
  EXPECT_EQ(RaisedNumber([&] {
              geometry.MatrixMultiply(a, BoundedArray<double>({1, 2}, {1, 2}), product);
            }),
            kSubscriptOutOfRange);
  EXPECT_EQ(product, BoundedArray<double>({1, 2}, {1, 2}));
  EXPECT_EQ(RaisedNumber([&] {
              geometry.MatrixMultiply(a, BoundedArray<double>({2, 4}, {1, 1}), product);
            }),
            kSubscriptOutOfRange);
  EXPECT_EQ(product, BoundedArray<double>({1, 2}, {1, 1}));
}

TEST_F(CGeometryTest, EachDimensionOfAFactorMayBeginAtAnyIndexUpToOne) {
  const BoundedArray<double> a = Matrix({-1, 2}, {0, 2}, {9, 9, 9, 9, 9, 9, 9, 1, 2, 9, 3, 4});
  const BoundedArray<double> b = Matrix({1, 2}, {-2, 1}, {9, 9, 9, 5, 9, 9, 9, 6});
  BoundedArray<double> product;
  geometry.MatrixMultiply(a, b, product);
  EXPECT_EQ(product, Matrix({1, 2}, {1, 1}, {17, 39}));
  geometry.MatrixMultiply(Matrix({1, 1}, {1, 2}, {1, 2}), Matrix({0, 2}, {1, 1}, {9, 5, 6}), product);
  EXPECT_EQ(product, Matrix({1, 1}, {1, 1}, {17}));
}

TEST_F(CGeometryTest, FactorsMustHaveTwoDimensionsFromIndexOneOn) {
  const BoundedArray<double> a = Matrix({1, 2}, {1, 2}, {1, 2, 3, 4});
  const BoundedArray<double> block({1, 2}, {1, 2}, {1, 2});
  const BoundedArray<double> fromTwo = Matrix({1, 2}, {2, 3}, {1, 2, 3, 4});
  for (const BoundedArray<double>& other : {block, fromTwo}) {
    BoundedArray<double> product;
    EXPECT_EQ(RaisedNumber([&] { geometry.MatrixMultiply(other, a, product); }), kSubscriptOutOfRange);
    EXPECT_EQ(RaisedNumber([&] { geometry.MatrixMultiply(a, other, product); }), kSubscriptOutOfRange);
  }
  BoundedArray<double> product;
  geometry.MatrixMultiply(BoundedArray<double>({1, 2}, {-7, -5}), a, product);
  EXPECT_EQ(product, BoundedArray<double>({1, 2}, {1, 2}));
}

TEST_F(CGeometryTest, FactorsWithoutTwoDimensionsLeaveTheProduct) {
  const BoundedArray<double> a = Matrix({1, 1}, {1, 1}, {1});
  const BoundedArray<double> before = Matrix({5, 5}, {5, 5}, {7});
  BoundedArray<double> product = before;
  for (const BoundedArray<double>& other :
       {BoundedArray<double>(), BoundedArray<double>(Bounds{1, 3}), BoundedArray<double>({-3, 0}, {-3, 0})}) {
    EXPECT_EQ(RaisedNumber([&] { geometry.MatrixMultiply(other, other, product); }), kSubscriptOutOfRange);
    EXPECT_EQ(product, before);
  }
  geometry.MatrixMultiply(BoundedArray<double>({1, 2}, {-1, 0}), a, product);
  EXPECT_EQ(product, BoundedArray<double>({1, 2}, {1, 1}));
}

TEST_F(CGeometryTest, ProductKeepsTheElementsBeforeAnOverflow) {
  const BoundedArray<double> a = Matrix({1, 2}, {1, 2}, {1, 2, 1e200, 1});
  const BoundedArray<double> b = Matrix({1, 2}, {1, 2}, {3, 1e200, 4, 5});
  BoundedArray<double> product;
  EXPECT_EQ(RaisedNumber([&] { geometry.MatrixMultiply(a, b, product); }), kOverflow);
  EXPECT_EQ(product, Matrix({1, 2}, {1, 2}, {11, 1e200, 3e200, 0}));
  geometry.MatrixMultiply(Matrix({1, 1}, {1, 1}, {kInfinity}), Matrix({1, 1}, {1, 1}, {2}), product);
  EXPECT_EQ(product(1, 1), kInfinity);
}

TEST_F(CGeometryTest, SumsBeginAtAZeroThatIsNotNegative) {
  const BoundedArray<double> one = Matrix({1, 1}, {1, 1}, {1});
  BoundedArray<double> product;
  for (const double first : {2.0, kInfinity}) {
    geometry.MatrixMultiply(Matrix({1, 2}, {1, 1}, {first, -0.0}), one, product);
    EXPECT_EQ(product, Matrix({1, 2}, {1, 1}, {first, 0}));
    EXPECT_FALSE(std::signbit(product(2, 1))) << first;
  }
  for (const Bounds noTerms : {Bounds{-1, 0}, Bounds{-2, -1}}) {
    geometry.MatrixMultiply(BoundedArray<double>({1, 1}, noTerms), one, product);
    EXPECT_EQ(product, Matrix({1, 1}, {1, 1}, {0}));
    EXPECT_FALSE(std::signbit(product(1, 1))) << "without terms";
  }
}

TEST_F(CGeometryTest, ProductsOfAllSizesAddInTheOrderOfK) {
  std::mt19937 random(9);
  std::normal_distribution<double> normal;
  for (int round = 0; round < 200; ++round) {
    const auto size = [&] { return static_cast<std::int32_t>(1 + random() % 23); };
    const Bounds rows{1, size()};
    const Bounds terms{1, size()};
    const Bounds columns{1, size()};
    BoundedArray<double> a(rows, terms);
    BoundedArray<double> b(terms, columns);
    for (double& element : a.Elements()) element = normal(random);
    for (double& element : b.Elements()) element = normal(random);
    BoundedArray<double> product;
    geometry.MatrixMultiply(a, b, product);
    for (std::int32_t i = 1; i <= rows.upper; ++i) {
      for (std::int32_t j = 1; j <= columns.upper; ++j) {
        double sum = 0.0;
        for (std::int32_t k = 1; k <= terms.upper; ++k) sum += a(i, k) * b(k, j);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(product(i, j)), std::bit_cast<std::uint64_t>(sum));
      }
    }
  }
}

TEST_F(CGeometryTest, MatricesMayReachToTheEndsOfTheRangeOfIndices) {
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const BoundedArray<double> one = Matrix({1, 1}, {1, 1}, {1});
  const BoundedArray<double> before = Matrix({5, 5}, {5, 5}, {7});
  BoundedArray<double> product = before;
  EXPECT_EQ(
      RaisedNumber([&] {
        geometry.MatrixMultiply(BoundedArray<double>({kLeast, kLeast + 1}, {kLeast, kLeast}), one, product);
      }),
      kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] {
              geometry.MatrixMultiply(one, BoundedArray<double>({kLeast, kLeast}, {kLeast, kLeast}), product);
            }),
            kSubscriptOutOfRange);
  EXPECT_EQ(product, before);
  EXPECT_EQ(RaisedNumber([&] {
              geometry.MatrixMultiply(Matrix({1, 1}, {kMost, kMost}, {1}), one, product);
            }),
            kSubscriptOutOfRange);
  EXPECT_EQ(product, BoundedArray<double>({1, 1}, {1, 1}));
  geometry.MatrixMultiply(BoundedArray<double>({1, 2}, {kLeast, kLeast}), one, product);
  EXPECT_EQ(product, BoundedArray<double>({1, 2}, {1, 1}));
  Vector point;
  for (const Bounds bounds : {Bounds{kLeast, kLeast + 2}, Bounds{kMost - 2, kMost}}) {
    const BoundedArray<double> matrix(bounds, bounds);
    EXPECT_EQ(RaisedNumber([&] { geometry.TransformPoint(1, 2, 3, matrix, point.x, point.y, point.z); }),
              kSubscriptOutOfRange);
  }
  EXPECT_EQ(point, kUntouched);
}

// --- Memory ----------------------------------------------------------------------------------------------

TEST_F(CGeometryTest, AShortageOfMemoryRaisesErrorSevenAndNothingElse) {
  const BoundedArray<double> square({1, 9}, {1, 9});
  const BoundedArray<double> twoRows({1, 2}, {1, 9});
  const BoundedArray<double> huge = Matrix({1, 1}, {1, 1}, {kLargest});
  BoundedArray<double> result;
  ExpectNumberOrErrorSeven(0, [&] {
    result = BoundedArray<double>();
    geometry.BuildTransformationMatrix(1, 2, 3, result);
  });
  ExpectNumberOrErrorSeven(0, [&] { geometry.MatrixMultiply(square, square, result); });
  ExpectNumberOrErrorSeven(0, [&] {
    result.ReDim({1, 9}, {1, 9});
    geometry.MatrixMultiply(square, result, result);
  });
  ExpectNumberOrErrorSeven(kSubscriptOutOfRange, [&] { geometry.MatrixMultiply(square, twoRows, result); });
  ExpectNumberOrErrorSeven(kOverflow, [&] {
    geometry.MatrixMultiply(huge, Matrix({1, 1}, {1, 1}, {kLargest}), result);
  });
  ExpectNumberOrErrorSeven(kOverflow, [&] { geometry.VectorMagnitude3d(kLargest, 0, 0); });
}

// --- Self-test -------------------------------------------------------------------------------------------

TEST_F(CGeometryTest, SelfTestPasses) {
  EXPECT_EQ(SelfTest(geometry), FailedTests{});
}

TEST_F(CGeometryTest, DeliberateVectorDotProduct3dReturnsByReferenceAndVectorMagnitude3dByValue) {
  double dotProduct = 77.0;
  static_assert(std::is_void_v<decltype(geometry.VectorDotProduct3d(1, 2, 3, 4, 5, 6, dotProduct))>);
  static_assert(std::is_same_v<decltype(geometry.VectorMagnitude3d(1, 2, 3)), double>);
  geometry.VectorDotProduct3d(1, 2, 3, 4, 5, 6, dotProduct);
  EXPECT_EQ(dotProduct, 32);
}

TEST_F(CGeometryTest, DeliberateTransformPointPassesItsSelfTestWithTheOtherSignOfZ) {
  const Vector turned = Turned(Rotation(1, 1, 0), {100, 0, 0});
  EXPECT_NEAR(turned.z, -1.7452, 0.001);
}

}  // namespace
}  // namespace vorquill21
