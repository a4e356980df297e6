// Prints, for the points of the tests, how many digits of the exact least-squares solution the fits reach,
// ours beside the peers', as the lines of a table in Markdown: the worst coefficient's -log10(|error| /
// |exact|), and its distance from the nearest double in units in the last place.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <span>
#include <vector>

#include "bench/fit_peers.hpp"
#include "tests/interpolate/fit_cases.hpp"
#include "tests/support/ulps.hpp"
#include "vorquill21/interpolate/curve_fit.hpp"
#include "vorquill21/interpolate/surface_fit.hpp"

namespace vorquill21 {
namespace {

struct Accuracy {
  double digits = std::numeric_limits<double>::infinity();
  std::int64_t ulps = 0;
};

/// Of the worst coefficient; those that are exactly 0 have no digits and are left out.
Accuracy AccuracyOf(std::span<const double> fitted, std::span<const double> exact) {
  Accuracy worst;
  for (std::size_t k = 0; k < exact.size(); ++k) {
    if (exact[k] == 0.0) continue;
    worst.ulps = std::max(worst.ulps, test::UlpsBetween(fitted[k], exact[k]));
    const double error = std::abs((fitted[k] - exact[k]) / exact[k]);
    if (error > 0.0) worst.digits = std::min(worst.digits, std::max(0.0, -std::log10(error)));
  }
  return worst;
}

void PrintCell(const Accuracy& accuracy) {
  if (accuracy.ulps == 0) {
    std::printf(" all | 0 |");
  } else {
    std::printf(" %.1f | %.3g |", accuracy.digits, static_cast<double>(accuracy.ulps));
  }
}

void PrintLine(const char* name, int order, std::size_t points, std::span<const double> ours,
               std::span<const double> eigen, std::span<const double> gsl, std::span<const double> exact) {
  std::printf("| %s | %zu | %d |", name, points, order);
  for (const auto& fitted : {ours, eigen, gsl}) PrintCell(AccuracyOf(fitted, exact));
  std::printf("\n");
}

/// Fits by both peers: writeTerms(i, row) writes row i of the matrix.
template <typename WriteTerms>
void PrintBesidePeers(const char* name, int order, std::span<const double> values,
                      std::span<const double> ours, std::span<const double> exact,
                      const WriteTerms& writeTerms) {
  bench::EigenFit eigen(values.size(), exact.size());
  bench::GslFit gsl(values.size(), exact.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    writeTerms(i, eigen.Row());
    eigen.TakeRow(i, values[i]);
    writeTerms(i, gsl.Row(i));
    gsl.Value(i) = values[i];
  }
  double squares = 0.0;
  PrintLine(name, order, values.size(), ours, eigen.Solve(squares), gsl.Solve(squares), exact);
}

void PrintCurve(const test::CurveCase& points) {
  BoundedArray<double> coefficients;
  FitCurve(points.xs, points.ys, points.order, coefficients, nullptr);
  PrintBesidePeers(
      points.name, points.order, points.ys, coefficients.Elements(), points.coefficients,
      [&](std::size_t i, std::span<double> row) { bench::WriteCurveTerms(points.xs[i], points.order, row); });
}

/// The elements (i, j) with i + j <= order of a square.
std::vector<double> TermsOf(std::span<const double> square, int order) {
  std::vector<double> terms;
  for (int i = 0; i <= order; ++i) {
    for (int j = 0; i + j <= order; ++j)
      terms.push_back(square[static_cast<std::size_t>(i * (order + 1) + j)]);
  }
  return terms;
}

void PrintSurface(const test::SurfaceCase& points) {
  BoundedArray<double> coefficients;
  FitSurface(points.xs, points.ys, points.zs, points.order, coefficients, nullptr);
  const std::vector<double> ours = TermsOf(coefficients.Elements(), points.order);
  const std::vector<double> exact = TermsOf(points.coefficients, points.order);
  PrintBesidePeers(points.name, points.order, points.zs, ours, exact,
                   [&](std::size_t i, std::span<double> row) {
                     bench::WriteSurfaceTerms(points.xs[i], points.ys[i], points.order, row);
                   });
}

void PrintHead(const char* what) {
  std::printf("| %s | points | order | ours: digits | ulps | QR: digits | ulps | SVD: digits | ulps |\n",
              what);
  std::printf("|---|---:|---:|---:|---:|---:|---:|---:|---:|\n");
}

/// Whether the peers have as many points as terms, and numbers whose powers are in range.
bool IsForPeers(std::span<const double> xs, std::size_t terms) {
  const auto isModerate = [](double x) { return std::abs(x) < 1e30 && (x == 0.0 || std::abs(x) > 1e-30); };
  return xs.size() >= terms && std::all_of(xs.begin(), xs.end(), isModerate);
}

void Print() {
  PrintHead("curve");
  for (const test::CurveCase& points : test::kCurveCases) {
    if (IsForPeers(points.xs, points.coefficients.size()) && IsForPeers(points.ys, 0)) PrintCurve(points);
  }
  std::printf("\n");
  PrintHead("surface");
  for (const test::SurfaceCase& points : test::kSurfaceCases) {
    const auto terms = static_cast<std::size_t>((points.order + 1) * (points.order + 2) / 2);
    if (IsForPeers(points.xs, terms)) PrintSurface(points);
  }
}

}  // namespace
}  // namespace vorquill21

int main() {
  vorquill21::Print();
}
