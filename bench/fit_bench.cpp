// Fits of polynomials, from the points to coefficients and deviation, and their evaluation. The peers keep
// their work space from one fit to the next.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include "bench/fit_peers.hpp"
#include "vorquill21/interpolate/curve_fit.hpp"
#include "vorquill21/interpolate/surface_fit.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kPoints = 10000;
constexpr int kFitOrder = 3;
constexpr std::size_t kCurveTerms = 4;
constexpr std::size_t kSurfaceTerms = 10;
constexpr std::size_t kPlaces = 1024;  // where polynomials are evaluated

struct Points {
  std::vector<double> xs, ys, zs;
};

const Points& Scattered() {
  static const Points points = [] {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> uniform(-2.0, 3.0);
    std::normal_distribution<double> noise(0.0, 0.01);
    Points made;
    for (std::size_t i = 0; i < kPoints; ++i) {
      const double x = uniform(random);
      const double y = uniform(random);
      made.xs.push_back(x);
      made.ys.push_back(y);
      made.zs.push_back(std::sin(x) * std::cos(y) + noise(random));
    }
    return made;
  }();
  return points;
}

/// Whether both are the same but for what doubles lose.
bool AreClose(std::span<const double> left, std::span<const double> right) {
  for (std::size_t i = 0; i < right.size(); ++i) {
    if (!(std::abs(left[i] - right[i]) <= 1e-9 * (1.0 + std::abs(right[i])))) return false;
  }
  return left.size() == right.size();
}

// --- Curves ----------------------------------------------------------------------------------------------

std::span<const double> SolveCurve(bench::GslFit& fit, double& squares) {
  const Points& points = Scattered();
  for (std::size_t i = 0; i < kPoints; ++i) {
    bench::WriteCurveTerms(points.xs[i], kFitOrder, fit.Row(i));
    fit.Value(i) = points.zs[i];
  }
  return fit.Solve(squares);
}

std::span<const double> SolveCurve(bench::EigenFit& fit, double& squares) {
  const Points& points = Scattered();
  for (std::size_t i = 0; i < kPoints; ++i) {
    bench::WriteCurveTerms(points.xs[i], kFitOrder, fit.Row());
    fit.TakeRow(i, points.zs[i]);
  }
  return fit.Solve(squares);
}

void CurveOurs(benchmark::State& state) {
  const Points& points = Scattered();
  BoundedArray<double> coefficients;
  double stdDev = 0.0;
  FitCurve(points.xs, points.zs, kFitOrder, coefficients, &stdDev);
  bench::GslFit peer(kPoints, kCurveTerms);
  double squares = 0.0;
  if (!AreClose(coefficients.Elements().first(kCurveTerms), SolveCurve(peer, squares))) {
    return state.SkipWithError("different coefficients");
  }
  for (auto _ : state) {
    FitCurve(points.xs, points.zs, kFitOrder, coefficients, &stdDev);
    benchmark::DoNotOptimize(stdDev);
  }
}

template <typename Fit>
void CurvePeer(benchmark::State& state) {
  Fit fit(kPoints, kCurveTerms);
  double squares = 0.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(SolveCurve(fit, squares));
    benchmark::DoNotOptimize(std::sqrt(squares / static_cast<double>(kPoints - 1)));
  }
}

// --- Surfaces --------------------------------------------------------------------------------------------

std::span<const double> SolveSurface(bench::GslFit& fit, double& squares) {
  const Points& points = Scattered();
  for (std::size_t i = 0; i < kPoints; ++i) {
    bench::WriteSurfaceTerms(points.xs[i], points.ys[i], kFitOrder, fit.Row(i));
    fit.Value(i) = points.zs[i];
  }
  return fit.Solve(squares);
}

std::span<const double> SolveSurface(bench::EigenFit& fit, double& squares) {
  const Points& points = Scattered();
  for (std::size_t i = 0; i < kPoints; ++i) {
    bench::WriteSurfaceTerms(points.xs[i], points.ys[i], kFitOrder, fit.Row());
    fit.TakeRow(i, points.zs[i]);
  }
  return fit.Solve(squares);
}

std::vector<double> TermsOf(const BoundedArray<double>& coefficients) {
  std::vector<double> terms;
  for (std::int32_t i = 0; i <= kFitOrder; ++i) {
    for (std::int32_t j = 0; i + j <= kFitOrder; ++j) terms.push_back(coefficients(i, j));
  }
  return terms;
}

void SurfaceOurs(benchmark::State& state) {
  const Points& points = Scattered();
  BoundedArray<double> coefficients;
  double rms = 0.0;
  FitSurface(points.xs, points.ys, points.zs, kFitOrder, coefficients, &rms);
  bench::GslFit peer(kPoints, kSurfaceTerms);
  double squares = 0.0;
  if (!AreClose(TermsOf(coefficients), SolveSurface(peer, squares))) {
    return state.SkipWithError("different coefficients");
  }
  for (auto _ : state) {
    FitSurface(points.xs, points.ys, points.zs, kFitOrder, coefficients, &rms);
    benchmark::DoNotOptimize(rms);
  }
}

template <typename Fit>
void SurfacePeer(benchmark::State& state) {
  Fit fit(kPoints, kSurfaceTerms);
  double squares = 0.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(SolveSurface(fit, squares));
    benchmark::DoNotOptimize(std::sqrt(squares / static_cast<double>(kPoints)));
  }
}

// --- Evaluation ------------------------------------------------------------------------------------------

const std::vector<double>& Places() {
  static const std::vector<double> places(Scattered().xs.begin(), Scattered().xs.begin() + kPlaces);
  return places;
}

void Report(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPlaces));
}

const BoundedArray<double>& CurveOfOrder8() {
  static const BoundedArray<double> coefficients({1.5, -0.25, 0.75, 0.1, -0.3, 0.02, 0.004, -0.0007, 0.0002},
                                                 1);
  return coefficients;
}

double EvaluateWithPow(double x, const BoundedArray<double>& coefficients) {
  double sum = 0.0;
  for (std::int32_t k = 1; k <= coefficients.UpperBound(); ++k) sum += coefficients(k) * std::pow(x, k - 1);
  return sum;
}

void EvaluateCurveOurs(benchmark::State& state) {
  const auto& coefficients = CurveOfOrder8();
  for (const double x : Places()) {
    if (std::abs(EvaluateCurve(x, coefficients) - EvaluateWithPow(x, coefficients)) > 1e-12) {
      return state.SkipWithError("different values");
    }
  }
  for (auto _ : state) {
    for (const double x : Places()) benchmark::DoNotOptimize(EvaluateCurve(x, coefficients));
  }
  Report(state);
}

void EvaluateCurvePow(benchmark::State& state) {
  for (auto _ : state) {
    for (const double x : Places()) benchmark::DoNotOptimize(EvaluateWithPow(x, CurveOfOrder8()));
  }
  Report(state);
}

const BoundedArray<double>& SurfaceOfOrder5() {
  static const BoundedArray<double> coefficients = [] {
    std::mt19937_64 random(2);
    std::normal_distribution<double> normal;
    BoundedArray<double> made(Bounds{0, 5}, Bounds{0, 5});
    for (double& element : made.Elements()) element = normal(random);
    return made;
  }();
  return coefficients;
}

double EvaluateNested(double x, double y, const BoundedArray<double>& array) {
  const double* const coefficients = array.Elements().data();
  const auto order = static_cast<std::size_t>(array.UpperBound(1));
  double sum = 0.0;
  for (std::size_t i = order + 1; i-- > 0;) {
    double row = 0.0;
    for (std::size_t j = order - i + 1; j-- > 0;) row = row * x + coefficients[i * (order + 1) + j];
    sum = sum * y + row;
  }
  return sum;
}

void EvaluateSurfaceOurs(benchmark::State& state) {
  const auto& coefficients = SurfaceOfOrder5();
  for (const double x : Places()) {
    const double nested = EvaluateNested(x, 1.0 - x, coefficients);
    if (std::abs(EvaluateSurface(x, 1.0 - x, coefficients) - nested) > 1e-10) {
      return state.SkipWithError("different values");
    }
  }
  for (auto _ : state) {
    for (const double x : Places()) benchmark::DoNotOptimize(EvaluateSurface(x, 1.0 - x, coefficients));
  }
  Report(state);
}

void EvaluateSurfaceNested(benchmark::State& state) {
  const auto& coefficients = SurfaceOfOrder5();
  for (auto _ : state) {
    for (const double x : Places()) benchmark::DoNotOptimize(EvaluateNested(x, 1.0 - x, coefficients));
  }
  Report(state);
}

BENCHMARK(CurveOurs)->Name("OneDPolynomialFit order 3/ours");
BENCHMARK(CurvePeer<bench::GslFit>)->Name("OneDPolynomialFit order 3/gsl_multifit_linear");
BENCHMARK(CurvePeer<bench::EigenFit>)->Name("OneDPolynomialFit order 3/Eigen QR");

BENCHMARK(SurfaceOurs)->Name("TwoDPolynomialFit order 3/ours");
BENCHMARK(SurfacePeer<bench::GslFit>)->Name("TwoDPolynomialFit order 3/gsl_multifit_linear");
BENCHMARK(SurfacePeer<bench::EigenFit>)->Name("TwoDPolynomialFit order 3/Eigen QR");

BENCHMARK(EvaluateCurveOurs)->Name("OneDPolynomialInterpolate order 8/ours");
BENCHMARK(EvaluateCurvePow)->Name("OneDPolynomialInterpolate order 8/pow");
BENCHMARK(EvaluateSurfaceOurs)->Name("TwoDPolynomialInterpolate order 5/ours");
BENCHMARK(EvaluateSurfaceNested)->Name("TwoDPolynomialInterpolate order 5/nested Horner");

}  // namespace
}  // namespace vorquill21
