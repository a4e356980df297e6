#pragma once

#include <cmath>
#include <limits>

#include "vorquill21/numeric/error_free.hpp"

namespace vorquill21 {

/// A number of about 32 decimal digits: the unevaluated sum of two doubles, `high` being the double nearest
/// to it. Not part of the interface.
///
/// Each function gives its result within a few units of 2^-104 of it, as long as nothing overflows, and no
/// product falls below 2^-960, where its error would underflow; callers scale their numbers so that they stay
/// well inside. What is not finite does not survive: infinite operands give NaN. `fused` is handed on to
/// TwoProduct and never changes a bit.
struct DoubleDouble {
  double high = 0.0;
  double low = 0.0;
};

VORQUILL21_INLINED DoubleDouble Normalised(double larger, double smaller) {
  const ErrorFree sum = FastTwoSum(larger, smaller);
  return {sum.value, sum.error};
}

VORQUILL21_INLINED DoubleDouble operator-(DoubleDouble value) {
  return {-value.high, -value.low};
}

/// left + right, precise even where nearly everything cancels.
VORQUILL21_INLINED DoubleDouble operator+(DoubleDouble left, DoubleDouble right) {
  const ErrorFree high = TwoSum(left.high, right.high);
  const ErrorFree low = TwoSum(left.low, right.low);
  const ErrorFree sum = FastTwoSum(high.value, high.error + low.value);
  return Normalised(sum.value, sum.error + low.error);
}

VORQUILL21_INLINED DoubleDouble operator-(DoubleDouble left, DoubleDouble right) {
  return left + -right;
}

/// left + right, within 2^-104 of |left| + |right|: half the work, for sums whose terms are no more precise
/// than that themselves.
VORQUILL21_INLINED DoubleDouble QuickSum(DoubleDouble left, DoubleDouble right) {
  const ErrorFree high = TwoSum(left.high, right.high);
  return Normalised(high.value, high.error + (left.low + right.low));
}

/// left - right, precise even where nearly everything cancels.
VORQUILL21_INLINED DoubleDouble Difference(double left, DoubleDouble right) {
  const ErrorFree high = TwoSum(left, -right.high);
  return Normalised(high.value, high.error - right.low);
}

/// left * right, whose `high` may be a last bit off the nearest double: good enough where it goes into a sum.
template <bool fused>
VORQUILL21_INLINED DoubleDouble QuickProduct(DoubleDouble left, DoubleDouble right) {
  const ErrorFree high = TwoProduct<fused>(left.high, right.high);
  return {high.value, high.error + (left.high * right.low + left.low * right.high)};
}

template <bool fused>
VORQUILL21_INLINED DoubleDouble QuickProduct(DoubleDouble left, double right) {
  const ErrorFree high = TwoProduct<fused>(left.high, right);
  return {high.value, high.error + left.low * right};
}

/// left * right.
template <bool fused>
VORQUILL21_INLINED DoubleDouble Product(DoubleDouble left, double right) {
  const DoubleDouble product = QuickProduct<fused>(left, right);
  return Normalised(product.high, product.low);
}

template <bool fused>
VORQUILL21_INLINED DoubleDouble Product(DoubleDouble left, DoubleDouble right) {
  const DoubleDouble product = QuickProduct<fused>(left, right);
  return Normalised(product.high, product.low);
}

/// value * powerOfTwo, exact for a power of two.
VORQUILL21_INLINED DoubleDouble Scaled(DoubleDouble value, double powerOfTwo) {
  return {value.high * powerOfTwo, value.low * powerOfTwo};
}

/// left / right, by long division with three digits of 53 bits; `right` is not 0.
template <bool fused>
VORQUILL21_INLINED DoubleDouble Quotient(DoubleDouble left, DoubleDouble right) {
  const double first = left.high / right.high;
  const DoubleDouble afterFirst = left - Product<fused>(right, first);
  const double second = afterFirst.high / right.high;
  const DoubleDouble afterSecond = afterFirst - Product<fused>(right, second);
  return Normalised(first, second) + DoubleDouble{afterSecond.high / right.high, 0.0};
}

/// The square root of a number that is not negative, by one step of Newton's method from the root of `high`.
template <bool fused>
VORQUILL21_INLINED DoubleDouble SquareRoot(DoubleDouble value) {
  if (value.high == 0.0) return {};
  const double root = std::sqrt(value.high);
  const ErrorFree square = TwoProduct<fused>(root, root);
  const DoubleDouble rest = value - DoubleDouble{square.value, square.error};
  return Normalised(root, rest.high / (2.0 * root));
}

/// The double nearest to value * 2^exponent, rounded once even where it is subnormal; infinite beyond the
/// largest double.
inline double RoundedTimesPowerOfTwo(DoubleDouble value, int exponent) {
  constexpr double kLeast = std::numeric_limits<double>::denorm_min();
  constexpr int kLeastExponent = -1074;
  const double nearest = std::ldexp(value.high, exponent);
  if (value.low == 0.0 || std::abs(nearest) > std::numeric_limits<double>::min()) return nearest;
  const double rest = value.high - std::ldexp(nearest, -exponent);
  const bool isHalf = std::abs(rest) == std::ldexp(0.5, kLeastExponent - exponent);
  const bool isMore = (rest > 0.0) == (value.low > 0.0);
  return isHalf && isMore ? nearest + std::copysign(kLeast, rest) : nearest;
}

}  // namespace vorquill21
