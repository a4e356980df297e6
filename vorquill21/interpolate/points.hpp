#pragma once

#include <cmath>
#include <cstdint>
#include <span>

#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/numeric/double_double.hpp"

namespace vorquill21 {

// What the fits of curves and of surfaces do alike with their points. Not part of the interface.

/// The elements of `values` that have the indices of `model`, which has elements; error 9 when one is not
/// there.
std::span<const double> ElementsAlong(ArrayView<const double> model, ArrayView<const double> values);

/// Where numbers lie. When one of them is infinite or NaN, the bounds mean nothing.
struct Extent {
  double least;
  double greatest;
  bool isFinite;
};

/// The extent of one number or more.
Extent ExtentOf(std::span<const double> numbers);

/// A power of two that brings numbers to at most 1, so that products of them neither overflow nor underflow,
/// whatever their size.
class Scaling {
 public:
  /// The largest of |numbers| comes to 0.5 or more; with nothing but zeros they stay as they are.
  explicit Scaling(const Extent& extent);

  /// A number comes to number * 2^-Exponent().
  int Exponent() const { return exponent_; }

  /// number * 2^-Exponent(); 0 when that is below 2^-300, which is nothing beside the largest one.
  VORQUILL21_INLINED double operator()(double number) const {
    constexpr double kNothing = 0x1p-300;
    const double scaled = number * first_ * second_;
    return std::abs(scaled) < kNothing ? 0.0 : scaled;
  }

 private:
  int exponent_ = 0;
  double first_;  // two factors, because one may lie outside the range of doubles
  double second_;
};

/// The double nearest to value * 2^exponent; error 6 when it exceeds the largest, or when the value itself
/// went beyond all bounds.
double Unscaled(DoubleDouble value, std::int64_t exponent);

}  // namespace vorquill21
