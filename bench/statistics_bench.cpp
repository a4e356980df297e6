#include <benchmark/benchmark.h>
#include <gsl/gsl_statistics_double.h>

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "vorquill21/numeric/statistics.hpp"

namespace vorquill21 {
namespace {

std::vector<double> Readings(std::size_t count) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(20.0, 3.0);
  std::vector<double> values(count);
  for (double& value : values) value = normal(random);
  return values;
}

/// Runs `operation(values)` over readings whose number is the argument.
template <typename Operation>
void OverReadings(benchmark::State& state, Operation operation) {
  const std::vector<double> values = Readings(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(operation(values));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

using Values = const std::vector<double>&;
const CStatistics statistics;

const auto oursMean = [](Values v) { return statistics.ArithmeticMean(v); };
const auto gslMean = [](Values v) { return gsl_stats_mean(v.data(), 1, v.size()); };
BENCHMARK_CAPTURE(OverReadings, , oursMean)->Name("ArithmeticMean/ours")->Arg(1'000'000);
BENCHMARK_CAPTURE(OverReadings, , gslMean)->Name("ArithmeticMean/gsl")->Arg(1'000'000);

const auto oursVariance = [](Values v) { return statistics.Variance(v); };
const auto gslVariance = [](Values v) { return gsl_stats_variance(v.data(), 1, v.size()); };
BENCHMARK_CAPTURE(OverReadings, , oursVariance)->Name("Variance/ours")->Arg(1'000'000);
BENCHMARK_CAPTURE(OverReadings, , gslVariance)->Name("Variance/gsl")->Arg(1'000'000);

const auto oursMaximum = [](Values v) {
  std::int32_t index = 0;
  statistics.Maximum(v, &index);
  return index;
};
const auto gslMaximum = [](Values v) { return gsl_stats_max_index(v.data(), 1, v.size()); };
BENCHMARK_CAPTURE(OverReadings, , oursMaximum)->Name("Maximum with index/ours")->Arg(100'000);
BENCHMARK_CAPTURE(OverReadings, , gslMaximum)->Name("Maximum with index/gsl")->Arg(100'000);

const auto oursMinimum = [](Values v) {
  std::int32_t index = 0;
  statistics.Minimum(v, &index);
  return index;
};
const auto gslMinimum = [](Values v) { return gsl_stats_min_index(v.data(), 1, v.size()); };
BENCHMARK_CAPTURE(OverReadings, , oursMinimum)->Name("Minimum with index/ours")->Arg(100'000);
BENCHMARK_CAPTURE(OverReadings, , gslMinimum)->Name("Minimum with index/gsl")->Arg(100'000);

const auto oursRms = [](Values v) { return statistics.RMS(v); };
const auto gslRms = [](Values v) {
  return std::sqrt(gsl_stats_tss_m(v.data(), 1, v.size(), 0.0) / static_cast<double>(v.size()));
};
BENCHMARK_CAPTURE(OverReadings, , oursRms)->Name("RMS/ours")->Arg(100'000);
BENCHMARK_CAPTURE(OverReadings, , gslRms)->Name("RMS/gsl")->Arg(100'000);

}  // namespace
}  // namespace vorquill21
