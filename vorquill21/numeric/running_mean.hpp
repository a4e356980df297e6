#pragma once

#include <span>

namespace vorquill21 {

/// The mean in its running form: M = 0, and for the k-th value x, k = 1, 2, ..., first M = M / k, then
/// M = x / k + (k - 1) * M. An overflow of finite values is error 6. Not part of the interface.
double RunningMean(std::span<const double> values);

/// The same, step by step, and what RunningMean must equal to the bit.
double RunningMeanByDivision(std::span<const double> values);

}  // namespace vorquill21
