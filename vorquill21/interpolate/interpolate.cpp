#include "vorquill21/interpolate/interpolate.hpp"

#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <typeinfo>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/interpolate/curve_fit.hpp"
#include "vorquill21/interpolate/surface_fit.hpp"
#include "vorquill21/numeric/table_search.hpp"

namespace vorquill21 {
namespace {

constexpr std::int32_t kInvalidPropertyValue = 380;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

std::int32_t After(std::int32_t index) {
  return CheckedInt32(std::int64_t{index} + 1);
}

std::int32_t Before(std::int32_t index) {
  return CheckedInt32(std::int64_t{index} - 1);
}

/// The line through two points, step by step, with the errors where they arise.
[[gnu::cold, gnu::noinline]] double CheckedLine(double x1, double x2, double y1, double y2, double x) {
  const double dx = CheckedDifference(x2, x1);
  const double dy = CheckedDifference(y2, y1);
  if (dx == 0.0) {
    if (dy == 0.0 && x == x1) return y1;
    throw TranslatingMemoryErrors([] {
      return LibraryError(kInvalidPropertyValue,
                          Text(kLibraryTitle) + u".CMathUtils.OneDLinearInterpolateFromPoints",
                          u"X values are coincident");
    });
  }
  const double slope = Checked(dy / dx, dy, dx);
  return CheckedSum(CheckedProduct(slope, CheckedDifference(x, x1)), y1);
}

/// The line through two points at `x`; not finite where there is a fault. (A zero dx makes the slope infinite
/// or NaN, and neither product nor sum turns that into a number again.)
double PlainLine(double x1, double x2, double y1, double y2, double x) {
  const double dx = x2 - x1;
  if (std::isinf(dx)) return kNone;
  return ((y2 - y1) / dx) * (x - x1) + y1;
}

/// The same with its faults raised.
double Line(double x1, double x2, double y1, double y2, double x) {
  const double value = PlainLine(x1, x2, y1, y2, x);
  return std::isfinite(value) ? value : CheckedLine(x1, x2, y1, y2, x);
}

/// A table of points, ascending or descending by the nodes at the bounds that its user named.
struct PointTable {
  ArrayView<const double> xs;
  ArrayView<const double> ys;
  std::int32_t lower;
  std::int32_t upper;
  bool ascending = xs(lower) < xs(upper);

  /// The line through the points `from` and `to` at `x`.
  double AlongLine(std::int32_t from, std::int32_t to, double x) const {
    return Line(xs(from), xs(to), ys(from), ys(to), x);
  }

  double Clipped(double x) const {
    const bool isAtLower = ascending ? x < xs(lower) : !(x <= xs(upper));
    return ys(isAtLower ? lower : upper);
  }

  double Extrapolated(double x) const {
    const bool isAtLower = ascending ? x < xs(lower) : !(x <= xs(lower));
    return isAtLower ? AlongLine(lower, After(lower), x) : AlongLine(upper, Before(upper), x);
  }
};

bool IsOwn(const CMathUtils* utils) {
  return utils != nullptr && &typeid(*utils) == &typeid(CMathUtils);
}

/// The line at `x` for a place within a table that the library's own search finds, in arrays of the same
/// bounds; NaN for any other place or arrays, and where a fault is to be raised.
double ValueWithin(ArrayView<const double> xs, ArrayView<const double> ys, double x) {
  const Bounds bounds = xs.BoundsOrNone();
  if (bounds != ys.BoundsOrNone() || !AllowBisection(bounds)) return kNone;
  const std::span<const double> nodes = xs.Elements();
  const bool ascending = IsAscendingAround(nodes, x);
  if (!ascending && !IsDescendingAround(nodes, x)) return kNone;

  const std::size_t interval = FindInterval(nodes, x, ascending);
  const double* const node = nodes.data() + interval;
  const double* const value = ys.Elements().data() + interval;
  return PlainLine(node[0], node[1], value[0], value[1], x);
}

/// A function of its own, so that the way to it costs those that do not take it nothing.
[[gnu::noinline]] double InterpolateBetweenEnds(const CInterpolate& interpolate,
                                                EOutOfBoundsBehaviour behaviour, ArrayView<const double> xs,
                                                ArrayView<const double> ys, double x) {
  return interpolate.OneDLinearInterpolateWithBounds(behaviour, xs, ys, x, xs.LowerBound(), xs.UpperBound());
}

}  // namespace

CInterpolate::CInterpolate(Platform& platform) : moUtils(MakeShared<CMathUtils>(platform)) {}

double CInterpolate::OneDLinearInterpolate(EOutOfBoundsBehaviour aeOutOfBoundsBehaviour,
                                           ArrayView<const double> arXVals, ArrayView<const double> arYVals,
                                           double arX) const {
  if (IsOwn(moUtils.get())) {
    const double value = ValueWithin(arXVals, arYVals, arX);
    if (std::isfinite(value)) return value;
  }
  return InterpolateBetweenEnds(*this, aeOutOfBoundsBehaviour, arXVals, arYVals, arX);
}

double CInterpolate::OneDLinearInterpolateFromPoints(double arX1, double arX2, double arY1, double arY2,
                                                     double arXVal) const {
  return Line(arX1, arX2, arY1, arY2, arXVal);
}

double CInterpolate::OneDLinearInterpolateWithBounds(EOutOfBoundsBehaviour aeOutOfBoundsBehaviour,
                                                     ArrayView<const double> arXVals,
                                                     ArrayView<const double> arYVals, double arX,
                                                     std::int32_t anLowerBound,
                                                     std::int32_t anUpperBound) const {
  if (moUtils == nullptr) Raise(kInvalidProcedureCall);
  std::int32_t interval = 0;
  const bool isInside = moUtils->ArrayLocate(arXVals, arX, interval);
  const PointTable table{arXVals, arYVals, anLowerBound, anUpperBound};
  if (isInside) return table.AlongLine(interval, After(interval), arX);
  if (aeOutOfBoundsBehaviour == eInterpClip) return table.Clipped(arX);
  if (aeOutOfBoundsBehaviour == eInterpExtrapolate) return table.Extrapolated(arX);
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
