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
  /// ArrayLocate of `moUtils` finds in all of `arXVals`; a node gives its own y, but for the rounding of the
  /// line.
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

  /// Fits y = c(1) + c(2) * x + ... + c(m + 1) * x^m, m being `anFitOrder`, to the points (arX(i), arY(i)), i
  /// over all indices of `arX`, so that the sum of the squared residuals is least. N is the number of points.
  ///
  /// `arCoeffs` receives the bounds 1 to N, one element for each point, not for each term: element k is the
  /// coefficient of x^(k - 1), those beyond m + 1 are 0. `arStdDev` receives the square root of (the sum of
  /// the squared residuals / (N - 1)), whatever the order. Order 0 leaves all coefficients and the deviation
  /// 0.
  ///
  /// Polynomials orthogonal over the points are built by their three-term recurrence (Forsythe 1957), in
  /// arithmetic of about 32 digits, and every number is rounded once, at the end: the coefficients are those
  /// of the exact solution for the given doubles, but for a rare last bit, unless the points determine them
  /// to less than 16 of the 32 digits. Points that differ by less than 1E-24 of the largest |x| may count as
  /// one. A point that is infinite or NaN makes the m + 1 coefficients and the deviation NaN.
  ///
  /// Errors, and what the results hold then; `arStdDev` is 0 from the start:
  /// - 6 when m + 1 exceeds 32 bits, and 9 when `arX` has no elements: `arCoeffs` as it was;
  /// - 9 when m is negative, or `arY` lacks an index of `arX`: `arCoeffs` has its bounds and is 0;
  /// - 11 when there are fewer than m + 1 different x, or a single point for m > 0: both hold the fit of
  ///   the highest order that the points support (all 0 for order 0);
  /// - 6 when a coefficient or the deviation exceeds the largest double: coefficients before that one
  ///   are there.
  ///
  /// Cost: linear in the points for each order.
  void OneDPolynomialFit(ArrayView<const double> arX, ArrayView<const double> arY, std::int32_t anFitOrder,
                         BoundedArray<double>& arCoeffs, double* arStdDev = nullptr) const;

  /// The sum of arCoeffs(k) * arX^(k - 1) over k = 1 to the upper bound of `arCoeffs`, k ascending. Each
  /// power is the double nearest to it, and 0^0 is 1.
  ///
  /// An element with an index below 1 is ignored; an upper bound below 1 gives 0; a lower bound above 1 is
  /// error 9. A power beyond the largest double is error 6 where its coefficient is 0, too. Cost: linear;
  /// zeros at the end, as OneDPolynomialFit leaves them, cost next to nothing.
  double OneDPolynomialInterpolate(double arX, ArrayView<const double> arCoeffs) const;

  /// Fits z = sum of a(i, j) * y^i * x^j over all i, j >= 0 with i + j <= n, n being `anFitOrder`, to the
  /// points (arXData(k), arYData(k), arZData(k)), k over all indices of `arXData`, so that the sum of the
  /// squared residuals is least.
  ///
  /// `arCoeffs` receives the bounds 0 to n by 0 to n; element (i, j), the power of y first, is a(i, j),
  /// elements with i + j > n are 0. `arRMSDeviation`, when asked for, receives the square root of the mean,
  /// over all points, of the squares of z - TwoDPolynomialInterpolate(x, y, arCoeffs).
  ///
  /// The normal equations are solved by elimination with partial pivoting, in arithmetic of about 32 digits
  /// on points that are shifted and scaled, and every coefficient is rounded once, at the end, as for
  /// OneDPolynomialFit. A point that is infinite or NaN makes all coefficients and the deviation NaN.
  ///
  /// Errors, and what the results hold then; `arRMSDeviation` is as it was:
  /// - 9 when n is negative or `arXData` has no elements: `arCoeffs` as it was;
  /// - 9 when another array lacks an index of `arXData`: `arCoeffs` has its bounds and is 0;
  /// - 11 when the points do not determine the coefficients, because they are fewer than the
  ///   (n + 1) * (n + 2) / 2 terms, or lie (to 12 digits) on a straight line or another curve whose
  ///   equation is a sum of these terms: `arCoeffs` has its bounds and is 0;
  /// - 6 when a coefficient exceeds the largest double: coefficients before that one are there; when the
  ///   surface at a point or the deviation does: all of them.
  ///
  /// Cost: linear in the points, (n + 1) * (5 * n + 4) / 2 sums; the third power of the number of terms.
  void TwoDPolynomialFit(ArrayView<const double> arXData, ArrayView<const double> arYData,
                         ArrayView<const double> arZData, std::int32_t anFitOrder,
                         BoundedArray<double>& arCoeffs, double* arRMSDeviation = nullptr) const;

  /// The sum of arCoeffs(i, j) * arY^i * arX^j over i + j <= n, n being the upper bound of the first
  /// dimension, in this order, which fixes the rounding: the terms with i = 0 and j = 1 to n; for each i = 1
  /// to n the terms with j = 0 to n - i; the constant last. A power of x is the one before times x, a product
  /// with a power of y that of the row before times y.
  ///
  /// Elements with i + j > n are not looked at. An element that is needed and is not there is error 9, as
  /// with a lower bound above 0 or with n below 0. Cost: linear in the terms.
  double TwoDPolynomialInterpolate(double arX, double arY, const BoundedArray<double>& arCoeffs) const;

 private:
  friend class MSupport;
  void SelfTest_Main(FailedTests& aoFailedTests) const;
};

}  // namespace vorquill21
