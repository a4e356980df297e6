#include "vorquill21/interpolate/interpolate.hpp"

#include <cmath>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/interpolate/curve_fit.hpp"
#include "vorquill21/interpolate/surface_fit.hpp"

namespace vorquill21 {
namespace {

constexpr std::int32_t kInvalidPropertyValue = 380;

std::int32_t After(std::int32_t index) {
  return CheckedInt32(std::int64_t{index} + 1);
}

std::int32_t Before(std::int32_t index) {
  return CheckedInt32(std::int64_t{index} - 1);
}

/// The line through two points, step by step, with the errors where they arise.
[[gnu::cold]] double CheckedLine(double x1, double x2, double y1, double y2, double x) {
  const double dx = CheckedDifference(x2, x1);
  const double dy = CheckedDifference(y2, y1);
  if (dx == 0.0) {
    if (dy == 0.0 && x == x1) return y1;
    throw LibraryError(kInvalidPropertyValue,
                       Text(kLibraryTitle) + u".CMathUtils.OneDLinearInterpolateFromPoints",
                       u"X values are coincident");
  }
  const double slope = Checked(dy / dx, dy, dx);
  return CheckedSum(CheckedProduct(slope, CheckedDifference(x, x1)), y1);
}

/// The line through the points `from` and `to` at `x`.
double AlongLine(const CInterpolate& interpolate, ArrayView<const double> xs, ArrayView<const double> ys,
                 std::int32_t from, std::int32_t to, double x) {
  return interpolate.OneDLinearInterpolateFromPoints(xs(from), xs(to), ys(from), ys(to), x);
}

/// A place outside a table.
struct Outside {
  ArrayView<const double> xs;
  ArrayView<const double> ys;
  double x;
  std::int32_t lower;
  std::int32_t upper;
  bool ascending;

  [[gnu::noinline]] double Clipped() const {
    const bool isAtLower = ascending ? x < xs(lower) : !(x <= xs(upper));
    return ys(isAtLower ? lower : upper);
  }

  [[gnu::noinline]] double Extrapolated(const CInterpolate& interpolate) const {
    const bool isAtLower = ascending ? x < xs(lower) : !(x <= xs(lower));
    return isAtLower ? AlongLine(interpolate, xs, ys, lower, After(lower), x)
                     : AlongLine(interpolate, xs, ys, upper, Before(upper), x);
  }
};

}  // namespace

CInterpolate::CInterpolate(Platform& platform) : moUtils(std::make_shared<CMathUtils>(platform)) {}

double CInterpolate::OneDLinearInterpolate(EOutOfBoundsBehaviour aeOutOfBoundsBehaviour,
                                           ArrayView<const double> arXVals, ArrayView<const double> arYVals,
                                           double arX) const {
  return OneDLinearInterpolateWithBounds(aeOutOfBoundsBehaviour, arXVals, arYVals, arX, arXVals.LowerBound(),
                                         arXVals.UpperBound());
}

double CInterpolate::OneDLinearInterpolateFromPoints(double arX1, double arX2, double arY1, double arY2,
                                                     double arXVal) const {
  const double dx = arX2 - arX1;
  const double dy = arY2 - arY1;
  const double value = (dy / dx) * (arXVal - arX1) + arY1;
  // A fault leaves a value that is not finite, unless it is in dx.
  const bool hasDirection = dx != 0.0 && std::isfinite(dx);
  return hasDirection && std::isfinite(value) ? value : CheckedLine(arX1, arX2, arY1, arY2, arXVal);
}

double CInterpolate::OneDLinearInterpolateWithBounds(EOutOfBoundsBehaviour aeOutOfBoundsBehaviour,
                                                     ArrayView<const double> arXVals,
                                                     ArrayView<const double> arYVals, double arX,
                                                     std::int32_t anLowerBound,
                                                     std::int32_t anUpperBound) const {
  if (moUtils == nullptr) Raise(kInvalidProcedureCall);
  std::int32_t interval = 0;
  const bool isInside = moUtils->ArrayLocate(arXVals, arX, interval);
  const bool ascending = arXVals(anLowerBound) < arXVals(anUpperBound);
  if (isInside) return AlongLine(*this, arXVals, arYVals, interval, After(interval), arX);
  const Outside outside{arXVals, arYVals, arX, anLowerBound, anUpperBound, ascending};
  if (aeOutOfBoundsBehaviour == eInterpClip) return outside.Clipped();
  if (aeOutOfBoundsBehaviour == eInterpExtrapolate) return outside.Extrapolated(*this);
  return 0.0;
}

void CInterpolate::OneDPolynomialFit(ArrayView<const double> arX, ArrayView<const double> arY,
                                     std::int32_t anFitOrder, BoundedArray<double>& arCoeffs,
                                     double* arStdDev) const {
  FitCurve(arX, arY, anFitOrder, arCoeffs, arStdDev);
}

double CInterpolate::OneDPolynomialInterpolate(double arX, ArrayView<const double> arCoeffs) const {
  return EvaluateCurve(arX, arCoeffs);
}

void CInterpolate::TwoDPolynomialFit(ArrayView<const double> arXData, ArrayView<const double> arYData,
                                     ArrayView<const double> arZData, std::int32_t anFitOrder,
                                     BoundedArray<double>& arCoeffs, double* arRMSDeviation) const {
  FitSurface(arXData, arYData, arZData, anFitOrder, arCoeffs, arRMSDeviation);
}

double CInterpolate::TwoDPolynomialInterpolate(double arX, double arY,
                                               const BoundedArray<double>& arCoeffs) const {
  return EvaluateSurface(arX, arY, arCoeffs);
}

}  // namespace vorquill21
