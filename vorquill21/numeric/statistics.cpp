#include "vorquill21/numeric/statistics.hpp"

#include <cmath>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/extremes.hpp"
#include "vorquill21/numeric/running_mean.hpp"
#include "vorquill21/numeric/squared_distances.hpp"

namespace vorquill21 {
namespace {

/// Upper bound less lower bound.
std::int32_t Extent(ArrayView<const double> values) {
  return CheckedInt32(std::int64_t{values.UpperBound()} - values.LowerBound());
}

std::int32_t Count(ArrayView<const double> values) {
  return CheckedInt32(std::int64_t{Extent(values)} + 1);
}

double RootOf(double variance) {
  return variance == 0.0 ? 0.0 : std::sqrt(variance);
}

/// The element that `position` finds, and its index in the array's own bounds.
template <typename Position>
double Extreme(ArrayView<const double> values, std::int32_t* index, Position position) {
  if (index != nullptr) *index = values.LowerBound();
  if (values.Elements().empty()) Raise(kSubscriptOutOfRange);
  const std::size_t found = position(values.Elements());
  if (index != nullptr) *index += static_cast<std::int32_t>(found);
  return values.Elements()[found];
}

}  // namespace

CStatistics::CStatistics(Platform& platform) : platform_(platform) {}

double CStatistics::ArithmeticMean(ArrayView<const double> arVals) const {
  return RunningMean(arVals.Elements());
}

double CStatistics::Maximum(ArrayView<const double> arValues, std::int32_t* anMaxIndex) const {
  return Extreme(arValues, anMaxIndex, PositionOfMaximum);
}

double CStatistics::Minimum(ArrayView<const double> arValues, std::int32_t* anMinIndex) const {
  return Extreme(arValues, anMinIndex, PositionOfMinimum);
}

double CStatistics::StandardDeviation(ArrayView<const double> arValues) const {
  return RootOf(Variance(arValues));
}

double CStatistics::StandardDeviationPop(ArrayView<const double> arValues) const {
  return RootOf(VariancePop(arValues));
}

double CStatistics::Variance(ArrayView<const double> arValues) const {
  return VarianceCalc(arValues, true);
}

double CStatistics::VariancePop(ArrayView<const double> arValues) const {
  return VarianceCalc(arValues, false);
}

double CStatistics::VarianceCalc(ArrayView<const double> arValues, bool abSample) const {
  const double mean = ArithmeticMean(arValues);
  const double sum = SumOfSquaredDistances(arValues.Elements(), mean);
  const std::int32_t divisor = abSample ? Extent(arValues) : Count(arValues);
  return divisor > 0 ? sum / divisor : 0.0;
}

double CStatistics::RMS(ArrayView<const double> arValues) const {
  const double sum = SumOfSquaredDistances(arValues.Elements(), 0.0);
  const std::int32_t count = Count(arValues);
  const double meanSquare = count > 0 ? sum / count : 0.0;
  return meanSquare <= 0.0 ? meanSquare : std::sqrt(meanSquare);
}

}  // namespace vorquill21
