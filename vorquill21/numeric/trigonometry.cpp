#include "vorquill21/numeric/trigonometry.hpp"

#include <cmath>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/elementary.hpp"

namespace vorquill21 {
namespace {

constexpr double kPi = 0x1.921fb54442d11p+1;
constexpr double kHalfPi = kPi / 2;

/// -1, 0 or 1; a NaN stays one.
double Sign(double value) {
  if (std::isnan(value)) return value;
  return static_cast<double>(value > 0.0) - static_cast<double>(value < 0.0);
}

}  // namespace

CTrigonometry::CTrigonometry(Platform& platform) : platform_(platform) {}

double CTrigonometry::ArcCos(double arValue) const {
  if (std::abs(arValue) < 1.0) return kHalfPi - ArcTangent(arValue / std::sqrt(1.0 - arValue * arValue));
  return kHalfPi - Sign(arValue) * kHalfPi;
}

double CTrigonometry::ArcSin(double arValue) const {
  if (std::abs(arValue) < 1.0) return ArcTangent(arValue / std::sqrt(1.0 - arValue * arValue));
  return Sign(arValue) * kHalfPi;
}

double CTrigonometry::ArcTan2(double arX, double arY) const {
  if (arX == 0.0) return Sign(arY) * kHalfPi;
  const double angle = ArcTangent(Checked(arY / arX, arY, arX));
  return arX < 0.0 && arY < 0.0 ? angle - kPi : angle;
}

double CTrigonometry::Degrees(double arRadians) const {
  return CheckedProduct(arRadians, 360.0 / kPi);
}

Variant CTrigonometry::Pi() const {
  return kPi;
}

void CTrigonometry::PolarToXY(double arRadians, double arRradius, double& arX, double& arY) const {
  const SineCosine direction = SineAndCosine(arRadians);
  arX = direction.cosine * arRradius;
  arY = direction.sine * arRradius;
}

double CTrigonometry::Radians(double arDegrees) const {
  return CheckedProduct(arDegrees, kPi / 360.0);
}

void CTrigonometry::XYToPolar(double arX, double arY, double& arRadians, double& arRadius) const {
  arRadians = ArcTan2(arX, arY);
  arRadius = std::sqrt(CheckedSum(CheckedProduct(arX, arX), CheckedProduct(arY, arY)));
}

}  // namespace vorquill21
