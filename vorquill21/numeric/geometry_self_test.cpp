#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "vorquill21/numeric/elementary.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/math_utils.hpp"

namespace vorquill21 {
namespace {

struct Point {
  double x;
  double y;
  double z;
};

// --- Lines -----------------------------------------------------------------------------------------------

bool FindsTheDistanceOfAPoint(const CGeometry& geometry, const CMathUtils& /*utils*/) {
  const double distance = geometry.LineDistanceToPoint(1, 1, 1, 3, 0, 4, 1, 2, 1);
  return std::abs(distance - std::sqrt(13.0 / 14.0)) <= 1e-05;
}

bool FindsTheAngleBetweenLines(const CGeometry& geometry, const CMathUtils& utils) {
  struct Row {
    Point line1[2];
    Point line2[2];
    double degrees;
  };
  constexpr double kUneven = 1.1234567;
  constexpr Row kRows[] = {
      {{{0, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {1, 2, 0}}, 63.434},
      {{{0, 0, 0}, {1, 2, 0}}, {{0, 0, 0}, {1, 0, 0}}, 63.434},
      {{{0, 0, 0}, {1, 1, 0}}, {{0, 0, 0}, {1, 1, 1}}, 35.264},
      {{{1, 1, 3}, {2, 2, 3}}, {{0, 0, 2}, {1, 1, 3}}, 35.264},
      {{{0, 0, 2}, {1, 1, 2}}, {{0, 0, 2}, {1, 1, 3}}, 35.264},
      {{{1, 0, 0}, {0, 2, 2}}, {{0, 0, 0}, {1, 2, 2}}, 38.942},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, 0, 0}}, 90},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, 0.001, 0}}, 89.942},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, -0.001, 0}}, 90.057},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {1, -1, 0}}, 135},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {0.001, -1, 0}}, 179.942},
      {{{0, 0, 0}, {0, 1, 0}}, {{0, 0, 0}, {-0.001, -1, 0}}, 179.942},
      {{{0, 0, 0}, {0, 2, 0}}, {{0, 0, 0}, {0, -2, 0}}, 180},
      {{{0, 0, 0}, {kUneven, kUneven, kUneven}}, {{0, 0, 0}, {kUneven, kUneven, kUneven}}, 0},
      {{{0, 0, 0}, {2.1, 1, 1}}, {{0, 0, 0}, {2.1, 1, 1}}, 0},
  };
  const bool betweenLines = std::ranges::all_of(kRows, [&](const Row& row) {
    const auto& [from1, to1] = row.line1;
    const auto& [from2, to2] = row.line2;
    const double degrees = geometry.AngleBetweenLines(from1.x, from1.y, from1.z, to1.x, to1.y, to1.z,  //
                                                      from2.x, from2.y, from2.z, to2.x, to2.y, to2.z);
    return utils.NumbersAreEqual(degrees, row.degrees, 3);
  });
  return betweenLines && utils.NumbersAreEqual(geometry.AngleBetweenVectors(-1, 2, 2, 1, 2, 2), 38.942, 3);
}

// --- Matrices --------------------------------------------------------------------------------------------

BoundedArray<double> Matrix(std::int32_t rows, std::int32_t columns, std::initializer_list<double> elements) {
  BoundedArray<double> matrix({1, rows}, {1, columns});
  std::ranges::copy(elements, matrix.Elements().begin());
  return matrix;
}

bool MultipliesMatrices(const CGeometry& geometry, const CMathUtils& /*utils*/) {
  BoundedArray<double> product;
  geometry.MatrixMultiply(Matrix(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), Matrix(3, 2, {1, 2, 3, 4, 5, 6}),
                          product);
  return product == Matrix(3, 2, {22, 28, 49, 64, 76, 100});
}

/// `point` turned by the matrix of three angles.
Point Turned(const CGeometry& geometry, Point degrees, Point point, int times = 1) {
  BoundedArray<double> matrix;
  geometry.BuildTransformationMatrix(degrees.x, degrees.y, degrees.z, matrix);
  for (int i = 0; i < times; ++i) {
    geometry.TransformPoint(point.x, point.y, point.z, matrix, point.x, point.y, point.z);
  }
  return point;
}

bool TurnsAlongTheAxes(const CGeometry& geometry, const CMathUtils& utils) {
  constexpr Point kOnX{100, 0, 0};
  constexpr double kDegree = 0x1.1df46a25ca311p-6;
  const auto near = [&utils](double actual, double expected) {
    return utils.NumbersAreEqual(actual, expected, 3);
  };
  const Point unturned = Turned(geometry, {0, 0, 0}, kOnX);
  const Point aboutX = Turned(geometry, {1, 0, 0}, kOnX);
  const Point aboutY = Turned(geometry, {0, 1, 0}, kOnX);
  const Point aboutZ = Turned(geometry, {0, 0, 1}, kOnX);
  return unturned.y == 0.0 && unturned.z == 0.0 &&                      //
         aboutX.y == 0.0 && aboutX.z == 0.0 &&                          //
         near(aboutY.x, 100.0 * Cosine(kDegree)) && aboutY.y == 0.0 &&  //
         near(aboutZ.x, 100.0 * Cosine(kDegree)) && near(aboutZ.y, 100.0 * Sine(kDegree)) &&
         near(aboutZ.z, 0.0) &&  //
         Turned(geometry, {0, 0, 0}, {100, 200, 0}).z == 0.0;
}

/// Fails a case only when X is wrong although Y and Z are right: the Z of {1, 1, 0} and {0, 1, 0} has the
/// other sign.
bool TurnsAboutSeveralAxes(const CGeometry& geometry, const CMathUtils& utils) {
  struct Row {
    Point degrees;
    Point point;
    Point expected;
  };
  constexpr Row kRows[] = {
      {{1, 1, 0}, {100, 0, 0}, {99.9847, 0, 1.7452}},
      {{0, 45, 45}, {100, 0, 0}, {50, 50, -70.7106}},
      {{1, 0, 0}, {100, 200, 0}, {100, 199.9695, 3.4905}},
      {{0, 1, 0}, {100, 200, 0}, {99.9848, 200, 3.4905}},
      {{30, 30, 0}, {100, 200, 0}, {136.6025, 173.2051, 36.6025}},
      {{90, 90, 90}, {100, 0, 0}, {0, 0, -100}},
      {{90, 90, 90}, {0, 100, 0}, {0, 100, 0}},
      {{90, 90, 90}, {0, 0, 100}, {100, 0, 0}},
  };
  const auto near = [&utils](double actual, double expected) {
    return utils.NumbersAreEqual(actual, expected, 3);
  };
  return std::ranges::all_of(kRows, [&](const Row& row) {
    const Point turned = Turned(geometry, row.degrees, row.point);
    return near(turned.x, row.expected.x) || !near(turned.y, row.expected.y) ||
           !near(turned.z, row.expected.z);
  });
}

bool ReturnsAfterFourTurns(const CGeometry& geometry, const CMathUtils& utils) {
  const Point turned = Turned(geometry, {90, 90, 90}, {100, 200, 300}, 4);
  return utils.NumbersAreEqual(turned.x, 100.0, 3);
}

bool TransformsPoints(const CGeometry& geometry, const CMathUtils& utils) {
  return TurnsAlongTheAxes(geometry, utils) && TurnsAboutSeveralAxes(geometry, utils) &&
         ReturnsAfterFourTurns(geometry, utils);
}

struct Check {
  TextView nameOnFailure;
  bool (*passes)(const CGeometry&, const CMathUtils&);
};

constexpr Check kChecks[] = {
    {u"SelfTest_LineDistanceToPoint", FindsTheDistanceOfAPoint},
    {u"SelfTest_MatrixMultiplication", MultipliesMatrices},
    {u"SelfTest_TransformPoint", TransformsPoints},
    {u"SelfTest_AngleBetweenLines", FindsTheAngleBetweenLines},
};

}  // namespace

void CGeometry::SelfTest_Main(FailedTests& aoFailedTests) const {
  const CMathUtils utils(platform_);
  for (const Check& check : kChecks) {
    if (!check.passes(*this, utils)) aoFailedTests.emplace_back(check.nameOnFailure);
  }
}

}  // namespace vorquill21
