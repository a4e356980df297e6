#pragma once

#include <cstdint>

#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/numeric/fused_multiplication.hpp"

namespace vorquill21 {

/// Fits y = c(1) + c(2) * x + ... + c(m + 1) * x^m, m being `anFitOrder`, to the points (arX(i), arY(i)), i
/// over all indices of `arX`, so that the sum of the squared residuals is least. N is the number of points.
/// Not part of the interface.
///
/// `arCoeffs` receives bounds (1 To N), one element for each point, not for each term: element k is the
/// coefficient of x^(k - 1), elements beyond m + 1 are 0. `arStdDev` receives sqrt(sum of squared residuals /
/// (N - 1)), whatever the order. Order 0 leaves all coefficients and the deviation 0.
///
/// Polynomials orthogonal over the points are built by their three-term recurrence, in double-double
/// arithmetic on points scaled by powers of two; every number is rounded once, at the end. So the
/// coefficients are the exact ones of the given doubles, correctly rounded but for a rare last bit, unless
/// the points determine them to less than about 16 of the 32 digits. Points that differ by less than
/// 1E-24 of the largest |x| may be taken for one. The bits are the same on all systems, and do not depend on
/// `fused`, which says whether functions compiled for fused multiplication are used.
///
/// A point that is infinite or NaN makes the m + 1 coefficients and the deviation NaN.
///
/// Errors, with what the results hold then; `arStdDev` is 0 from the start:
/// - 6 when m + 1 exceeds 32 bits, and 9 when `arX` has no elements: `arCoeffs` as it was.
/// - 9 when m is negative, or `arY` lacks an index of `arX`: `arCoeffs` has its bounds and is 0.
/// - 11 when there are fewer than m + 1 different x: both hold the fit of the highest order that the points
///   support (all 0 for order 0).
/// - 6 when a coefficient or the deviation exceeds the largest double: coefficients before that one are
/// there.
/// - 7 when memory could not be had.
///
/// Cost: linear in the points, one pass for each order and two more.
void FitCurve(ArrayView<const double> arX, ArrayView<const double> arY, std::int32_t anFitOrder,
              BoundedArray<double>& arCoeffs, double* arStdDev, bool fused = HasFusedMultiplication());

/// The sum of arCoeffs(k) * arX^(k - 1) over k = 1 to the upper bound of `arCoeffs`, in doubles, k ascending.
/// Each power is the double nearest to it, and 0^0 is 1. Not part of the interface.
///
/// An element with an index below 1 is ignored; an upper bound below 1 gives 0. A lower bound above 1 is
/// error 9, as is an array that was never dimensioned. A power, a product or a sum beyond the largest double
/// is error 6, also where the coefficient is 0; operands that already are infinite or NaN pass in silence.
///
/// Cost: linear in the elements; zeros at the end are only looked at.
double EvaluateCurve(double arX, ArrayView<const double> arCoeffs, bool fused = HasFusedMultiplication());

}  // namespace vorquill21
