#pragma once

#include <cstdint>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// Descriptive statistics of a one-dimensional array of doubles with any lower bound. An object holds no
/// state that a caller can see; x(L) ... x(U) below are the elements from the lower to the upper bound, and n
/// is their number.
///
/// An array without elements (upper bound below the lower one) gives 0, except for Maximum and Minimum, where
/// it is error 9. An array that was never dimensioned, or that has several dimensions, is error 9. A result
/// or an intermediate value beyond the largest double is error 6. Elements that are infinite or NaN pass
/// through as the arithmetic has it.
///
/// Every result is rounded exactly as the stated steps round in that order, whatever the processor. Cost:
/// linear, without a copy of the array.
class VORQUILL21_API CStatistics {
 public:
  explicit CStatistics(Platform& platform = Platform::Native());

  /// The mean in its running form, which keeps intermediate values near the data's magnitude: M = 0, and for
  /// the k-th element x, k = 1 ... n, first M = M / k, then M = x / k + (k - 1) * M. It may differ in the
  /// last digits from the sum divided by n.
  double ArithmeticMean(ArrayView<const double> arVals) const;

  /// The largest element. `anMaxIndex` receives its index in the array's own bounds, of the first one where
  /// several are equal. A NaN is never greater than another element, and none is greater than a NaN at the
  /// lower bound. For an array without elements (error 9) `anMaxIndex` holds the lower bound.
  double Maximum(ArrayView<const double> arValues, std::int32_t* anMaxIndex = nullptr) const;

  /// The smallest element, and its index in `anMinIndex`, as Maximum has it.
  double Minimum(ArrayView<const double> arValues, std::int32_t* anMinIndex = nullptr) const;

  /// The square root of Variance; 0 for a single element.
  double StandardDeviation(ArrayView<const double> arValues) const;

  /// The square root of VariancePop.
  double StandardDeviationPop(ArrayView<const double> arValues) const;

  /// The variance of a sample: the squares (M - x(i)) * (M - x(i)) summed from L to U, M being the
  /// ArithmeticMean, and divided by n - 1; 0 for a single element.
  double Variance(ArrayView<const double> arValues) const;

  /// The variance of a population: as Variance, divided by n.
  double VariancePop(ArrayView<const double> arValues) const;

  /// The root mean square: the squares x(i) * x(i) summed from L to U, divided by n, and the square root of
  /// that.
  double RMS(ArrayView<const double> arValues) const;

 private:
  friend class MSupport;
  void SelfTest_Main(FailedTests& aoFailedTests) const;

  double VarianceCalc(ArrayView<const double> arValues, bool abSample) const;

  Platform& platform_;
};

}  // namespace vorquill21
