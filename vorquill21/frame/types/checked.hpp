#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

/// Raises the floating fault that made `result` not finite although every operand is finite: error 6 for an
/// infinite result, error 5 for a NaN. Operands that already are infinite or NaN pass through in silence.
template <typename... Operands>
double Checked(double result, Operands... operands) {
  if (std::isfinite(result) || !(std::isfinite(operands) && ...)) return result;
  Raise(std::isnan(result) ? kInvalidProcedureCall : kOverflow);
}

/// left / right; a zero divisor is error 11 when both are finite (0 / 0 too), an overflow error 6.
inline double CheckedQuotient(double left, double right) {
  if (right == 0.0 && std::isfinite(left)) Raise(kDivisionByZero);
  return Checked(left / right, left, right);
}

inline double CheckedSum(double left, double right) {
  return Checked(left + right, left, right);
}

inline double CheckedDifference(double left, double right) {
  return Checked(left - right, left, right);
}

inline double CheckedProduct(double left, double right) {
  return Checked(left * right, left, right);
}

/// The 32-bit integer of the same value; error 6 outside the range.
inline std::int32_t CheckedInt32(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
    Raise(kOverflow);
  }
  return static_cast<std::int32_t>(value);
}

/// The nearest 32-bit integer, a half going to the even one; error 6 outside the range (and for a NaN).
inline std::int32_t RoundedInt32(double value) {
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
        rounded <= std::numeric_limits<std::int32_t>::max())) {
    Raise(kOverflow);
  }
  return static_cast<std::int32_t>(rounded);
}

}  // namespace vorquill21
