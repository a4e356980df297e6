#pragma once

#include <cmath>

/// Error-free transformations: a rounded result together with its exact rounding error (Dekker 1971, Knuth
/// TAOCP 4.2.2). They hold for finite operands when nothing overflows, and for products when the error does
/// not underflow. Not part of the interface.
///
/// Every function is inlined into its caller, so that one compiled for wider instructions leaves nothing
/// behind that others could come to call.
#define VORQUILL21_INLINED [[gnu::always_inline]] inline

namespace vorquill21 {

/// A rounded value and what rounding left out; value + error is exact.
struct ErrorFree {
  double value;
  double error;
};

/// left + right.
VORQUILL21_INLINED ErrorFree TwoSum(double left, double right) {
  const double sum = left + right;
  const double rightPart = sum - left;
  const double leftPart = sum - rightPart;
  return {sum, (left - leftPart) + (right - rightPart)};
}

/// larger + smaller, for |larger| >= |smaller| or larger = 0.
VORQUILL21_INLINED ErrorFree FastTwoSum(double larger, double smaller) {
  const double sum = larger + smaller;
  return {sum, smaller - (sum - larger)};
}

/// Two halves of at most 26 bits each, whose sum is `value`; for |value| below 2^995.
VORQUILL21_INLINED ErrorFree Split(double value) {
  constexpr double kSplitter = 134217729.0;  // 2^27 + 1
  const double scaled = kSplitter * value;
  const double high = scaled - (scaled - value);
  return {high, value - high};
}

/// left * right. `fused` says that the caller is compiled for a processor with fused multiplication; the
/// result is the same either way.
template <bool fused>
VORQUILL21_INLINED ErrorFree TwoProduct(double left, double right) {
  const double product = left * right;
  if constexpr (fused) {
    return {product, std::fma(left, right, -product)};
  } else {
    const ErrorFree l = Split(left);
    const ErrorFree r = Split(right);
    const double error =
        ((l.value * r.value - product) + l.value * r.error + l.error * r.value) + l.error * r.error;
    return {product, error};
  }
}

}  // namespace vorquill21
