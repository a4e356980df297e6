#include <benchmark/benchmark.h>
#include <gsl/gsl_interp.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "vorquill21/interpolate/interpolate.hpp"

namespace vorquill21 {
namespace {

/// A table of `count` nodes, and random places within it: more of them than the processor's prediction of
/// jumps can learn by heart.
struct Table {
  explicit Table(std::size_t count) : x(count), y(count), queries(std::size_t{1} << 16) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> step(0.5, 1.5);
    double next = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
      x[i] = next;
      y[i] = std::sin(next);
      next += step(random);
    }
    std::uniform_real_distribution<double> inside(x.front(), x.back());
    for (double& query : queries) query = inside(random);
  }

  std::vector<double> x;
  std::vector<double> y;
  std::vector<double> queries;
};

/// Runs `operation(table, query)` for each query in a table whose size is the argument.
template <typename Operation>
void OverQueries(benchmark::State& state, Operation operation) {
  const Table table(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (const double query : table.queries) benchmark::DoNotOptimize(operation(table, query));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(table.queries.size()));
}

const CMathUtils utils;
const CInterpolate interpolate;

const auto oursLocate = [](const Table& table, double query) {
  std::int32_t index = 0;
  utils.ArrayLocate(table.x, query, index);
  return index;
};
const auto stdLocate = [](const Table& table, double query) {
  return std::upper_bound(table.x.begin(), table.x.end(), query) - table.x.begin();
};
BENCHMARK_CAPTURE(OverQueries, , oursLocate)->Name("ArrayLocate/ours")->Arg(1000);
BENCHMARK_CAPTURE(OverQueries, , stdLocate)->Name("ArrayLocate/upper_bound")->Arg(1000);

const auto oursLinear = [](const Table& table, double query) {
  return interpolate.OneDLinearInterpolate(eInterpClip, table.x, table.y, query);
};
BENCHMARK_CAPTURE(OverQueries, , oursLinear)
    ->Name("OneDLinearInterpolate/ours")
    ->Arg(10)
    ->Arg(1000)
    ->Arg(1'000'000);

void LinearOfGsl(benchmark::State& state) {
  const Table table(static_cast<std::size_t>(state.range(0)));
  gsl_interp* const linear = gsl_interp_alloc(gsl_interp_linear, table.x.size());
  gsl_interp_accel* const accelerator = gsl_interp_accel_alloc();
  gsl_interp_init(linear, table.x.data(), table.y.data(), table.x.size());
  for (auto _ : state) {
    for (const double query : table.queries) {
      benchmark::DoNotOptimize(gsl_interp_eval(linear, table.x.data(), table.y.data(), query, accelerator));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(table.queries.size()));
  gsl_interp_accel_free(accelerator);
  gsl_interp_free(linear);
}
BENCHMARK(LinearOfGsl)->Name("OneDLinearInterpolate/gsl")->Arg(10)->Arg(1000)->Arg(1'000'000);

}  // namespace
}  // namespace vorquill21
