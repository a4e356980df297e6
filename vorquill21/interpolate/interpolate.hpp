#pragma once

#include <cstdint>
#include <memory>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/numeric/math_utils.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// What an interpolation does outside its table.
enum EOutOfBoundsBehaviour : std::int32_t {
  eInterpClip = 0,         ///< the y of the nearest end
  eInterpExtrapolate = 1,  ///< the line through the last two points of that end
};

/// Interpolation in tables of points, and polynomials of least squares in one and two dimensions.
///
/// Tables and data are one-dimensional arrays with any lower bound, read where they lie; arrays that belong
/// to each other are read at the same indices, so that an index which one of them lacks is error 9, as is an
/// array that was never dimensioned or has several dimensions. A result or an intermediate value beyond the
/// largest double is error 6, a division by zero error 11. By-reference results that were written before an
/// error stay written.
class VORQUILL21_API CInterpolate {
 public:
  explicit CInterpolate(Platform& platform = Platform::Native());

  /// Finds the intervals of tables with its ArrayLocate. A host may put its own object in place of the one
  /// that is made with this object; a null pointer makes every linear interpolation in a table error 5.
  std::shared_ptr<CMathUtils> moUtils;

  /// OneDLinearInterpolateWithBounds over all of `arXVals`.
  double OneDLinearInterpolate(EOutOfBoundsBehaviour aeOutOfBoundsBehaviour, ArrayView<const double> arXVals,
                               ArrayView<const double> arYVals, double arX) const;

  /// The straight line through two points at `arXVal`: (dy / dx) * (arXVal - arX1) + arY1 with
  /// dx = arX2 - arX1 and dy = arY2 - arY1.
  ///
  /// When dx is 0: arY1 if dy is 0 and arXVal equals arX1; otherwise error 380, "X values are coincident",
  /// with the source "Vorquill21.CMathUtils.OneDLinearInterpolateFromPoints". Cost: constant.
  double OneDLinearInterpolateFromPoints(double arX1, double arX2, double arY1, double arY2,
                                         double arXVal) const;

  /// The value at `arX` of the table with the nodes x(k) and the values y(k), joined by straight lines; x
  /// ascends or descends, which is not checked. Within the table the interval [k, k + 1] is the one that
  /// ArrayLocate of `moUtils` finds in all of `arXVals`, so that a node gives its own y.
  ///
  /// L = anLowerBound and U = anUpperBound decide only about what is outside. The table is ascending when
  /// x(L) < x(U).
  ///
  /// | behaviour          | ascending                     | descending                     |
  /// |--------------------|-------------------------------|--------------------------------|
  /// | eInterpClip        | arX < x(L) ? y(L) : y(U)      | arX <= x(U) ? y(U) : y(L)      |
  /// | eInterpExtrapolate | arX < x(L) ? lower : upper    | arX <= x(L) ? upper : lower    |
  /// | any other          | 0                             | 0                              |
  ///
  /// where "lower" is the line through the points L and L + 1, "upper" the one through U and U - 1.
  ///
  /// Equal nodes are error 380 as above; a negative bound of `arXVals`, as an empty array has, the error of
  /// ArrayLocate; an index outside the arrays, as a table of one point needs, error 9. Cost: logarithmic.
  double OneDLinearInterpolateWithBounds(EOutOfBoundsBehaviour aeOutOfBoundsBehaviour,
                                         ArrayView<const double> arXVals, ArrayView<const double> arYVals,
                                         double arX, std::int32_t anLowerBound,
                                         std::int32_t anUpperBound) const;

 private:
  friend class MSupport;
  void SelfTest_Main(FailedTests& aoFailedTests) const;
};

}  // namespace vorquill21
