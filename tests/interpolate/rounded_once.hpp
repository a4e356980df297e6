#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "tests/support/ulps.hpp"

namespace vorquill21::test {

/// Expects `value` to be `exact` but for the last place. Instead of an exact 0 there may be what 32 digits
/// cannot tell from it beside the numbers of `scale`.
inline void ExpectRoundedOnce(double value, double exact, std::span<const double> scale) {
  if (exact != 0.0) {
    EXPECT_LE(UlpsBetween(value, exact), 1);
    return;
  }
  double largest = 0.0;
  for (const double number : scale) largest = std::max(largest, std::abs(number));
  EXPECT_LE(std::abs(value), largest * 1e-28);
}

}  // namespace vorquill21::test
