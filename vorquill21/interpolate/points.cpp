#include "vorquill21/interpolate/points.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

std::span<const double> ElementsAlong(ArrayView<const double> model, ArrayView<const double> values) {
  if (values.LowerBound() > model.LowerBound() || values.UpperBound() < model.UpperBound()) {
    throw LibraryError(kSubscriptOutOfRange);
  }
  const std::int64_t skipped = std::int64_t{model.LowerBound()} - values.LowerBound();
  return values.Elements().subspan(static_cast<std::size_t>(skipped), model.Elements().size());
}

bool AllFinite(std::span<const double> numbers) {
  double nothing = 0.0;
  for (const double number : numbers) nothing += number * 0.0;
  return nothing == 0.0;
}

Scaling::Scaling(std::span<const double> numbers) {
  double largest = 0.0;
  for (const double number : numbers) largest = std::max(largest, std::abs(number));
  std::frexp(largest, &exponent_);
  const int half = exponent_ / 2;
  first_ = std::ldexp(1.0, -half);
  second_ = std::ldexp(1.0, half - exponent_);
}

double Unscaled(DoubleDouble value, std::int64_t exponent) {
  constexpr std::int64_t kBeyond = 10000;
  const double result =
      RoundedTimesPowerOfTwo(value, static_cast<int>(std::clamp(exponent, -kBeyond, kBeyond)));
  if (!std::isfinite(result)) throw LibraryError(kOverflow);
  return result;
}

}  // namespace vorquill21
