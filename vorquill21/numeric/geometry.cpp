#include "vorquill21/numeric/geometry.hpp"

#include <cmath>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/elementary.hpp"
#include "vorquill21/numeric/trigonometry.hpp"

namespace vorquill21 {
namespace {

constexpr double kRadiansPerDegree = 0x1.1df46a25ca311p-6;

/// x1*x2 + y1*y2 + z1*z2. A fault on the way leaves a sum that is not finite; then the steps are gone again.
double SumOfProducts(double x1, double x2, double y1, double y2, double z1, double z2) {
  const double sum = x1 * x2 + y1 * y2 + z1 * z2;
  if (std::isfinite(sum)) return sum;
  return CheckedSum(CheckedSum(CheckedProduct(x1, x2), CheckedProduct(y1, y2)), CheckedProduct(z1, z2));
}

double Magnitude(double x, double y, double z) {
  return HalfPower(SumOfProducts(x, x, y, y, z, z));
}

/// a*b - c*d.
double DifferenceOfProducts(double a, double b, double c, double d) {
  return CheckedDifference(CheckedProduct(a, b), CheckedProduct(c, d));
}

}  // namespace

CGeometry::CGeometry(Platform& platform) : platform_(platform) {}

double CGeometry::AngleBetweenLines(double arLine1Point1X, double arLine1Point1Y, double arLine1Point1Z,
                                    double arLine1Point2X, double arLine1Point2Y, double arLine1Point2Z,
                                    double arLine2Point1X, double arLine2Point1Y, double arLine2Point1Z,
                                    double arLine2Point2X, double arLine2Point2Y,
                                    double arLine2Point2Z) const {
  const double x1 = CheckedDifference(arLine1Point2X, arLine1Point1X);
  const double y1 = CheckedDifference(arLine1Point2Y, arLine1Point1Y);
  const double z1 = CheckedDifference(arLine1Point2Z, arLine1Point1Z);
  const double x2 = CheckedDifference(arLine2Point2X, arLine2Point1X);
  const double y2 = CheckedDifference(arLine2Point2Y, arLine2Point1Y);
  const double z2 = CheckedDifference(arLine2Point2Z, arLine2Point1Z);
  return AngleBetweenVectors(x1, y1, z1, x2, y2, z2);
}

double CGeometry::AngleBetweenVectors(double arVector1X, double arVector1Y, double arVector1Z,
                                      double arVector2X, double arVector2Y, double arVector2Z) const {
  const double dotProduct =
      SumOfProducts(arVector1X, arVector2X, arVector1Y, arVector2Y, arVector1Z, arVector2Z);
  const double magnitude1 = Magnitude(arVector1X, arVector1Y, arVector1Z);
  const double magnitude2 = Magnitude(arVector2X, arVector2Y, arVector2Z);
  const double magnitudes = CheckedProduct(magnitude1, magnitude2);
  if (magnitudes <= 0.0) return 0.0;
  const double cosine = Checked(dotProduct / magnitudes, dotProduct, magnitudes);
  return CTrigonometry(platform_).ArcCos(cosine) / kRadiansPerDegree;
}

void CGeometry::IntersectNormalPointToLine(double arLine1X, double arLine1Y, double arLine1Z, double arLine2X,
                                           double arLine2Y, double arLine2Z, double arPointX, double arPointY,
                                           double arPointZ, double& arInterX, double& arInterY,
                                           double& arInterZ) const {
  const auto distance = [this](double x1, double y1, double z1, double x2, double y2, double z2) {
    const double x = CheckedDifference(x1, x2);
    const double y = CheckedDifference(y1, y2);
    const double z = CheckedDifference(z1, z2);
    return VectorMagnitude3d(x, y, z);
  };
  const double a = distance(arLine1X, arLine1Y, arLine1Z, arPointX, arPointY, arPointZ);
  const double b = distance(arLine2X, arLine2Y, arLine2Z, arPointX, arPointY, arPointZ);
  const double c = distance(arLine1X, arLine1Y, arLine1Z, arLine2X, arLine2Y, arLine2Z);

  const auto squared = [](double value) { return Checked(Square(value), value); };
  const double squares = CheckedDifference(CheckedSum(squared(a), squared(c)), squared(b));
  const double fromLine1 = CheckedQuotient(squares, CheckedProduct(2.0, c));
  const double fraction = CheckedQuotient(fromLine1, c);

  const auto alongLine = [fraction](double from, double to) {
    return CheckedSum(CheckedProduct(fraction, CheckedDifference(to, from)), from);
  };
  arInterX = alongLine(arLine1X, arLine2X);
  arInterY = alongLine(arLine1Y, arLine2Y);
  arInterZ = alongLine(arLine1Z, arLine2Z);
}

double CGeometry::LineDistanceToPoint(double arLine1X, double arLine1Y, double arLine1Z, double arLine2X,
                                      double arLine2Y, double arLine2Z, double arPointX, double arPointY,
                                      double arPointZ) const {
  double lineX = 0.0;
  double lineY = 0.0;
  double lineZ = 0.0;
  VectorSubtract3d(arLine1X, arLine1Y, arLine1Z, arLine2X, arLine2Y, arLine2Z, lineX, lineY, lineZ);
  UnitVector3d(lineX, lineY, lineZ, lineX, lineY, lineZ);

  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  VectorSubtract3d(arPointX, arPointY, arPointZ, arLine1X, arLine1Y, arLine1Z, x, y, z);
  VectorCrossProduct3d(x, y, z, lineX, lineY, lineZ, x, y, z);
  return VectorMagnitude3d(x, y, z);
}

void CGeometry::UnitVector3d(double arVectorX, double arVectorY, double arVectorZ, double& arUnitX,
                             double& arUnitY, double& arUnitZ) const {
  const double magnitude = VectorMagnitude3d(arVectorX, arVectorY, arVectorZ);
  const auto unit = [magnitude](double component) {
    return magnitude == 0.0 ? 0.0 : Checked(component / magnitude, component, magnitude);
  };
  arUnitX = unit(arVectorX);
  arUnitY = unit(arVectorY);
  arUnitZ = unit(arVectorZ);
}

void CGeometry::VectorAdd3d(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                            double arVector2Y, double arVector2Z, double& arResultX, double& arResultY,
                            double& arResultZ) const {
  arResultX = CheckedSum(arVector1X, arVector2X);
  arResultY = CheckedSum(arVector1Y, arVector2Y);
  arResultZ = CheckedSum(arVector1Z, arVector2Z);
}

void CGeometry::VectorCrossProduct3d(double arVector1X, double arVector1Y, double arVector1Z,
                                     double arVector2X, double arVector2Y, double arVector2Z,
                                     double& arResultX, double& arResultY, double& arResultZ) const {
  arResultX = DifferenceOfProducts(arVector1Y, arVector2Z, arVector1Z, arVector2Y);
  arResultY = DifferenceOfProducts(arVector1Z, arVector2X, arVector1X, arVector2Z);
  arResultZ = DifferenceOfProducts(arVector1X, arVector2Y, arVector1Y, arVector2X);
}

void CGeometry::VectorDotProduct3d(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                                   double arVector2Y, double arVector2Z, double& arResult) const {
  arResult = SumOfProducts(arVector1X, arVector2X, arVector1Y, arVector2Y, arVector1Z, arVector2Z);
}

double CGeometry::VectorMagnitude3d(double arVectorX, double arVectorY, double arVectorZ) const {
  return Magnitude(arVectorX, arVectorY, arVectorZ);
}

void CGeometry::VectorSubtract3d(double arVector1X, double arVector1Y, double arVector1Z, double arVector2X,
                                 double arVector2Y, double arVector2Z, double& arResultX, double& arResultY,
                                 double& arResultZ) const {
  arResultX = CheckedDifference(arVector1X, arVector2X);
  arResultY = CheckedDifference(arVector1Y, arVector2Y);
  arResultZ = CheckedDifference(arVector1Z, arVector2Z);
}

}  // namespace vorquill21
