#include "vorquill21/interpolate/scaling.hpp"

#include <algorithm>
#include <cmath>

namespace vorquill21 {

Scaling::Scaling(std::span<const double> numbers) {
  double largest = 0.0;
  for (const double number : numbers) largest = std::max(largest, std::abs(number));
  std::frexp(largest, &exponent_);
  first_ = std::ldexp(1.0, -exponent_ / 2);
  second_ = std::ldexp(1.0, -exponent_ - -exponent_ / 2);
}

bool AllFinite(std::span<const double> numbers) {
  double nothing = 0.0;
  for (const double number : numbers) nothing += number * 0.0;
  return nothing == 0.0;
}

}  // namespace vorquill21
