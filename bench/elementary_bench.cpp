#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "vorquill21/numeric/elementary.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kArguments = 4096;

std::vector<double> Arguments(double least, double most) {
  std::mt19937 random(21);
  std::uniform_real_distribution<double> distribution(least, most);
  std::vector<double> arguments(kArguments);
  for (double& each : arguments) each = distribution(random);
  return arguments;
}

/// One value after another, none waiting for the one before it.
template <typename Function>
void Run(benchmark::State& state, double least, double most, const Function& function) {
  const std::vector<double> arguments = Arguments(least, most);
  for (auto _ : state) {
    for (const double argument : arguments) benchmark::DoNotOptimize(function(argument));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kArguments));
}

SineCosine SystemsSineAndCosine(double radians) {
  return {std::sin(radians), std::cos(radians)};
}

double SystemsThirdPower(double base) {
  return std::pow(base, 3.0);
}

double SystemsNinthPower(double base) {
  return std::pow(base, 9.0);
}

void SineOfOurs(benchmark::State& state) {
  Run(state, -7, 7, Sine);
}
BENCHMARK(SineOfOurs)->Name("sine of one turn each way/ours");

void SineOfSystem(benchmark::State& state) {
  Run(state, -7, 7, [](double radians) { return std::sin(radians); });
}
BENCHMARK(SineOfSystem)->Name("sine of one turn each way/libm");

void SineAndCosineOfOurs(benchmark::State& state) {
  Run(state, -7, 7, SineAndCosine);
}
BENCHMARK(SineAndCosineOfOurs)->Name("sine and cosine of one turn each way/ours");

void SineAndCosineOfSystem(benchmark::State& state) {
  Run(state, -7, 7, SystemsSineAndCosine);
}
BENCHMARK(SineAndCosineOfSystem)->Name("sine and cosine of one turn each way/libm");

void SineAndCosineOfManyTurnsOfOurs(benchmark::State& state) {
  Run(state, -50000, 50000, SineAndCosine);
}
BENCHMARK(SineAndCosineOfManyTurnsOfOurs)->Name("sine and cosine of many turns/ours");

void SineAndCosineOfManyTurnsOfSystem(benchmark::State& state) {
  Run(state, -50000, 50000, SystemsSineAndCosine);
}
BENCHMARK(SineAndCosineOfManyTurnsOfSystem)->Name("sine and cosine of many turns/libm");

void ArcTangentOfOurs(benchmark::State& state) {
  Run(state, -10, 10, ArcTangent);
}
BENCHMARK(ArcTangentOfOurs)->Name("arc tangent/ours");

void ArcTangentOfSystem(benchmark::State& state) {
  Run(state, -10, 10, [](double value) { return std::atan(value); });
}
BENCHMARK(ArcTangentOfSystem)->Name("arc tangent/libm");

void ThirdPowerOfOurs(benchmark::State& state) {
  Run(state, -10, 10, [](double base) { return IntegerPower(base, 3); });
}
BENCHMARK(ThirdPowerOfOurs)->Name("third power/ours");

void ThirdPowerOfSystem(benchmark::State& state) {
  Run(state, -10, 10, SystemsThirdPower);
}
BENCHMARK(ThirdPowerOfSystem)->Name("third power/libm");

void NinthPowerOfOurs(benchmark::State& state) {
  Run(state, -10, 10, [](double base) { return IntegerPower(base, 9); });
}
BENCHMARK(NinthPowerOfOurs)->Name("ninth power/ours");

void NinthPowerOfSystem(benchmark::State& state) {
  Run(state, -10, 10, SystemsNinthPower);
}
BENCHMARK(NinthPowerOfSystem)->Name("ninth power/libm");

}  // namespace
}  // namespace vorquill21
