#include "vorquill21/interpolate/points.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/interpolate/lanes.hpp"

namespace vorquill21 {

std::span<const double> ElementsAlong(ArrayView<const double> model, ArrayView<const double> values) {
  if (values.LowerBound() > model.LowerBound() || values.UpperBound() < model.UpperBound()) {
    Raise(kSubscriptOutOfRange);
  }
  const std::int64_t skipped = std::int64_t{model.LowerBound()} - values.LowerBound();
  return values.Elements().subspan(static_cast<std::size_t>(skipped), model.Elements().size());
}

Extent ExtentOf(std::span<const double> numbers) {
  double least[kLanes];
  double greatest[kLanes];
  double nothing[kLanes] = {};
  std::fill_n(least, kLanes, numbers.front());
  std::fill_n(greatest, kLanes, numbers.front());
  for (std::size_t first = 0; first < numbers.size(); first += kLanes) {
    const auto block = numbers.subspan(first, std::min(kLanes, numbers.size() - first));
    for (std::size_t lane = 0; lane < block.size(); ++lane) {
      const double number = block[lane];
      least[lane] = number < least[lane] ? number : least[lane];
      greatest[lane] = number > greatest[lane] ? number : greatest[lane];
      nothing[lane] += number * 0.0;
    }
  }
  return {*std::min_element(least, least + kLanes), *std::max_element(greatest, greatest + kLanes),
          std::accumulate(nothing, nothing + kLanes, 0.0) == 0.0};
}

Scaling::Scaling(const Extent& extent) {
  std::frexp(std::max(-extent.least, extent.greatest), &exponent_);
  const int half = exponent_ / 2;
  first_ = std::ldexp(1.0, -half);
  second_ = std::ldexp(1.0, half - exponent_);
}

double Unscaled(DoubleDouble value, std::int64_t exponent) {
  constexpr std::int64_t kBeyond = 10000;
  const double result =
      RoundedTimesPowerOfTwo(value, static_cast<int>(std::clamp(exponent, -kBeyond, kBeyond)));
  if (!std::isfinite(result)) Raise(kOverflow);
  return result;
}

}  // namespace vorquill21
