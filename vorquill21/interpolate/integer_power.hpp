#pragma once

#include <bit>
#include <cstdint>

#include "vorquill21/numeric/error_free.hpp"

namespace vorquill21 {

/// The double nearest to base^exponent, a half to the even one; `exponent` is not negative, and 0^0 is 1.
/// Infinite beyond the largest double; infinite and NaN bases as by std::pow. Not part of the interface.
///
/// Squared and multiplied in double-double arithmetic; where those 32 digits leave the rounding open, which
/// is rare, all digits of the power are worked out. Cost: logarithmic in the exponent, quadratic in the rare
/// case.
double NearestPower(double base, std::int32_t exponent);

/// 0 when `high` is the double nearest to every number within |high| * multiplications * 2^-102 of high +
/// low, which is as far off as so many products of double-doubles may be; something else when it may not be.
/// It is the double nearest to high + low. Not part of the interface.
VORQUILL21_INLINED std::uint64_t RoundingDoubt(double high, double low, double multiplications) {
  const double other = high + low * (1.0 + multiplications * 0x1p-48);
  return std::bit_cast<std::uint64_t>(other) ^ std::bit_cast<std::uint64_t>(high);
}

}  // namespace vorquill21
