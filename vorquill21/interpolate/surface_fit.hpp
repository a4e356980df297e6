#pragma once

#include <cstdint>

#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/numeric/fused_multiplication.hpp"

namespace vorquill21 {

/// Fits z = sum of a(i, j) * y^i * x^j over all i, j >= 0 with i + j <= n, n being `anFitOrder`, to the
/// points (arXData(k), arYData(k), arZData(k)), k over all indices of `arXData`, so that the sum of the
/// squared residuals is least. Not part of the interface.
///
/// `arCoeffs` receives bounds (0 To n, 0 To n); element (i, j), the power of y first, is a(i, j), elements
/// with i + j > n are 0. `arRMSDeviation`, when asked for, receives sqrt(mean of squared residuals) over all
/// points, a residual being z - EvaluateSurface(x, y, arCoeffs).
///
/// The normal equations are formed over points that are shifted to the middle of their ranges and scaled by
/// powers of two, and are solved by elimination with partial pivoting, all in double-double arithmetic; every
/// coefficient is rounded once, at the end. So the coefficients are the exact ones of the given doubles,
/// correctly rounded but for a rare last bit, unless the points determine them to less than about 16 of the
/// 32 digits. The bits are the same on all systems, and do not depend on `fused`, which says whether
/// functions compiled for fused multiplication are used.
///
/// A point that is infinite or NaN makes all coefficients with i + j <= n, and the deviation, NaN.
///
/// Errors, with what the results hold then; `arRMSDeviation` is as it was:
/// - 9 when n is negative or `arXData` has no elements: `arCoeffs` as it was.
/// - 9 when another array lacks an index of `arXData`: `arCoeffs` has its bounds and is 0.
/// - 11 when the points do not determine the coefficients, because they are fewer than the
///   (n + 1) * (n + 2) / 2 terms, or because they lie (to 12 digits) on a straight line or another curve
///   whose equation is a sum of these terms: `arCoeffs` has its bounds and is 0.
/// - 6 when a coefficient exceeds the largest double: coefficients before that one are there. When the
/// surface
///   at a point or the deviation does: all of them.
/// - 7 when memory could not be had.
///
/// Cost: linear in the points, (n + 1) * (5 * n + 4) / 2 sums; the third power of the number of terms.
void FitSurface(ArrayView<const double> arXData, ArrayView<const double> arYData,
                ArrayView<const double> arZData, std::int32_t anFitOrder, BoundedArray<double>& arCoeffs,
                double* arRMSDeviation, bool fused = HasFusedMultiplication());

/// The sum of arCoeffs(i, j) * arY^i * arX^j over i + j <= n, n being the upper bound of the first dimension,
/// in doubles and in this order, which fixes the rounding: the terms with i = 0 and j = 1 to n; for each i =
/// 1 to n the terms with j = 0 to n - i; the constant last. A power of x is the one before times x, a product
/// with a power of y the one of the row before times y. Not part of the interface.
///
/// Elements with i + j > n are not looked at. An element that is needed and is not there, as with lower
/// bounds above 0, with another number of dimensions or with n below 0, is error 9. A product or sum beyond
/// the largest double is error 6, also where the coefficient is 0; operands that already are infinite or NaN
/// pass in silence.
///
/// Cost: linear in the terms.
double EvaluateSurface(double arX, double arY, const BoundedArray<double>& arCoeffs);

}  // namespace vorquill21
