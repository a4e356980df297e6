#include <algorithm>
#include <cmath>
#include <vector>

#include "vorquill21/interpolate/interpolate.hpp"
#include "vorquill21/numeric/elementary.hpp"

namespace vorquill21 {
namespace {

bool FitsASurface(const CInterpolate& interpolate) {
  constexpr double kExpected = -0.00590613907411203;
  const double pi = 4.0 * ArcTangent(1.0);
  std::vector<double> xs;
  std::vector<double> ys;
  std::vector<double> zs;
  for (int x = -5; x <= 5; ++x) {
    for (int y = -5; y <= 5; ++y) {
      xs.push_back(x);
      ys.push_back(y);
      zs.push_back(-Cosine(3.0 * pi * x / 10.0) * Cosine(pi * y / 10.0));
    }
  }
  BoundedArray<double> coefficients;
  interpolate.TwoDPolynomialFit(xs, ys, zs, 3, coefficients);
  return std::abs(interpolate.TwoDPolynomialInterpolate(1.1, 2.2, coefficients) - kExpected) <= 1e-15;
}

bool InterpolatesLinearly(const CInterpolate& interpolate) {
  enum Comparison { kExact, kFourPlaces, kWithin };
  struct Row {
    EOutOfBoundsBehaviour behaviour;
    double x;
    double expected;
    Comparison comparison;
  };
  constexpr Row kAscending[] = {
      {eInterpExtrapolate, 1, 2.2, kExact},
      {eInterpExtrapolate, 2, 10.5, kExact},
      {eInterpExtrapolate, 3, 30.5, kExact},
      {eInterpExtrapolate, 2.5, 20.5, kExact},
      {eInterpExtrapolate, 0, -6.1, kFourPlaces},
      {eInterpExtrapolate, -1, -14.4, kWithin},
      {eInterpExtrapolate, 4, 50.5, kWithin},
      {eInterpClip, -1, 2.2, kExact},
      {eInterpClip, 4, 30.5, kExact},
  };
  constexpr Row kDescending[] = {
      {eInterpExtrapolate, 1, 30.5, kFourPlaces},  {eInterpExtrapolate, 2, 10.5, kFourPlaces},
      {eInterpExtrapolate, 3, 2.2, kFourPlaces},   {eInterpExtrapolate, 0, 50.5, kFourPlaces},
      {eInterpExtrapolate, -1, 70.5, kFourPlaces}, {eInterpExtrapolate, 4, -6.1, kFourPlaces},
      {eInterpClip, -1, 30.5, kFourPlaces},
  };
  const std::vector<double> y{2.2, 10.5, 30.5};
  const auto passes = [&](const std::vector<double>& x, const Row& row) {
    const double actual = interpolate.OneDLinearInterpolate(row.behaviour, x, y, row.x);
    if (row.comparison == kExact) return actual == row.expected;
    if (row.comparison == kWithin) return std::abs(actual - row.expected) <= 1e-7;
    return interpolate.moUtils->NumbersAreEqual(actual, row.expected, 4);
  };
  return std::ranges::all_of(kAscending,
                             [&](const Row& row) {
                               return passes({1, 2, 3}, row);
                             }) &&
         std::ranges::all_of(kDescending, [&](const Row& row) {
           return passes({3, 2, 1}, row);
         });
}

bool FitsACurve(const CInterpolate& interpolate) {
  const auto passes = [&interpolate](std::int32_t lower) {
    const BoundedArray<double> x({1, 2, 3, 4}, lower);
    const BoundedArray<double> y({0, 5, 15, 80}, lower);
    BoundedArray<double> coefficients;
    interpolate.OneDPolynomialFit(x, y, 2, coefficients);
    return interpolate.OneDPolynomialInterpolate(2.5, coefficients) == 6.25;
  };
  return passes(0) && passes(1);
}

struct Check {
  TextView nameOnFailure;
  bool (*passes)(const CInterpolate&);
};

constexpr Check kChecks[] = {
    {u"TwoD", FitsASurface},
    {u"OneDLinearInterpolate", InterpolatesLinearly},
    {u"OneDFit", FitsACurve},
};

}  // namespace

void CInterpolate::SelfTest_Main(FailedTests& aoFailedTests) const {
  for (const Check& check : kChecks) {
    if (!check.passes(*this)) aoFailedTests.emplace_back(check.nameOnFailure);
  }
}

}  // namespace vorquill21
