#pragma once

#include <span>

namespace vorquill21 {

/// The sum of (from - x) * (from - x) over the values x, each term rounded and added in the order of the
/// values. An overflow of finite values is error 6. Not part of the interface.
double SumOfSquaredDistances(std::span<const double> values, double from);

/// The same, term by term, and what SumOfSquaredDistances must equal to the bit.
double SumOfSquaredDistancesInOrder(std::span<const double> values, double from);

}  // namespace vorquill21
