#include "vorquill21/interpolate/curve_fit.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/interpolate/lanes.hpp"
#include "vorquill21/interpolate/points.hpp"
#include "vorquill21/numeric/double_double.hpp"

namespace vorquill21 {
namespace {

// --- Passes over the points ------------------------------------------------------------------------------

/// Points side by side, each with the values of the current and of the previous polynomial, and with what the
/// fit has left of y. Lanes behind the last point hold zeros, and the polynomials stay 0 there.
struct Block {
  double x[kLanes] = {};
  Lanes current;
  Lanes previous;
  Lanes residual;
};

/// From one polynomial p to the next: q = (x - alpha) * scale * p - beta * p_previous.
struct Step {
  DoubleDouble coefficient;  // of p in the fit
  DoubleDouble alpha;
  DoubleDouble beta;
  double scale;  // a power of two
};

/// What the fit needs to know of a polynomial q: the sums of q^2, (x - alpha) * q^2 and residual * q.
struct Moments {
  DoubleDouble square;
  DoubleDouble distance;
  DoubleDouble residual;
};

/// The residual without coefficient * p.
template <bool fused>
VORQUILL21_INLINED DoubleDouble ResidualWithout(const Block& block, std::size_t lane,
                                                DoubleDouble coefficient) {
  return QuickSum(block.residual[lane], -QuickProduct<fused>(block.current[lane], coefficient));
}

struct Points {
  std::span<const double> xs, ys;
};

/// Puts the scaled points into blocks, with the polynomial 1 as the current one.
VORQUILL21_INLINED Moments Begin(const Points& points, const Scaling& scaleX, const Scaling& scaleY,
                                 std::span<Block> blocks) {
  LaneSums xs, ys;
  for (std::size_t first = 0; first < points.xs.size(); first += kLanes) {
    Block& block = blocks[first / kLanes];
    const std::size_t count = std::min(kLanes, points.xs.size() - first);
    for (std::size_t lane = 0; lane < count; ++lane) {
      block.x[lane] = scaleX(points.xs[first + lane]);
      block.current.high[lane] = 1.0;
      block.residual.high[lane] = scaleY(points.ys[first + lane]);
    }
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      xs.Add(lane, {block.x[lane], 0.0});
      ys.Add(lane, block.residual[lane]);
    }
  }
  return {{static_cast<double>(points.xs.size()), 0.0}, xs.Total(), ys.Total()};
}

/// Takes the current polynomial's part out of the residuals, and goes on to the next polynomial.
template <bool fused>
VORQUILL21_INLINED Moments Advance(std::span<Block> blocks, const Step& step) {
  LaneSums squares, distances, residuals;
  for (Block& block : blocks) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const DoubleDouble residual = ResidualWithout<fused>(block, lane, step.coefficient);
      const DoubleDouble current = block.current[lane];
      const DoubleDouble distance = Difference(block.x[lane], step.alpha);
      const DoubleDouble next = QuickSum(QuickProduct<fused>(distance, Scaled(current, step.scale)),
                                         -QuickProduct<fused>(block.previous[lane], step.beta));
      const DoubleDouble square = QuickProduct<fused>(next, next);
      squares.Add(lane, square);
      distances.Add(lane, QuickProduct<fused>(square, distance));
      residuals.Add(lane, QuickProduct<fused>(residual, next));
      block.residual.Set(lane, residual);
      block.previous.Set(lane, current);
      block.current.Set(lane, next);
    }
  }
  return {squares.Total(), distances.Total(), residuals.Total()};
}

/// The sum of the squared residuals without coefficient * p.
template <bool fused>
VORQUILL21_INLINED DoubleDouble SquaredResiduals(std::span<const Block> blocks, DoubleDouble coefficient) {
  LaneSums squares;
  for (const Block& block : blocks) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const DoubleDouble residual = ResidualWithout<fused>(block, lane, coefficient);
      squares.Add(lane, QuickProduct<fused>(residual, residual));
    }
  }
  return squares.Total();
}

#ifdef VORQUILL21_WIDE_INSTRUCTIONS
[[gnu::target("avx2,fma")]] Moments BeginFused(const Points& points, const Scaling& scaleX,
                                               const Scaling& scaleY, std::span<Block> blocks) {
  return Begin(points, scaleX, scaleY, blocks);
}

[[gnu::target("avx2,fma")]] Moments AdvanceFused(std::span<Block> blocks, const Step& step) {
  return Advance<true>(blocks, step);
}

[[gnu::target("avx2,fma")]] DoubleDouble SquaredResidualsFused(std::span<const Block> blocks,
                                                               DoubleDouble coefficient) {
  return SquaredResiduals<true>(blocks, coefficient);
}
#endif

Moments Begin(const Points& points, const Scaling& scaleX, const Scaling& scaleY, std::span<Block> blocks,
              [[maybe_unused]] bool fused) {
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  if (fused) return BeginFused(points, scaleX, scaleY, blocks);
#endif
  return Begin(points, scaleX, scaleY, blocks);
}

Moments Advance(std::span<Block> blocks, const Step& step, [[maybe_unused]] bool fused) {
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  if (fused) return AdvanceFused(blocks, step);
#endif
  return Advance<false>(blocks, step);
}

DoubleDouble SquaredResiduals(std::span<const Block> blocks, DoubleDouble coefficient,
                              [[maybe_unused]] bool fused) {
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  if (fused) return SquaredResidualsFused(blocks, coefficient);
#endif
  return SquaredResiduals<false>(blocks, coefficient);
}

// --- The fit ---------------------------------------------------------------------------------------------

using Series = std::vector<DoubleDouble>;  // coefficients of the powers of x, ascending

DoubleDouble Ratio(DoubleDouble left, DoubleDouble right) {
  return Quotient<false>(left, right);
}

/// A power of two that brings a polynomial with this sum of squares near 1.
double ScaleOf(DoubleDouble square) {
  return std::ldexp(1.0, -std::ilogb(square.high) / 2);
}

/// One fit under way, on scaled points: after each term it is the fit of one order more.
class CurveFit {
 public:
  CurveFit(const Points& points, const Extent& extentX, const Extent& extentY, std::size_t terms, bool fused)
      : scaleX_(extentX),
        scaleY_(extentY),
        fused_(fused),
        blocks_((points.xs.size() + kLanes - 1) / kLanes),
        coefficients_(terms),
        current_(terms),
        previous_(terms) {
    const double discernible = kDiscernible * (scaleX_(extentX.greatest) - scaleX_(extentX.least));
    leastSquare_ = discernible * discernible;
    current_[0] = {1.0, 0.0};
    Take(Begin(points, scaleX_, scaleY_, blocks_, fused));
  }

  /// Adds the next term. False when the points do not tell its polynomial from 0; the fit is then as it was.
  bool AddTerm() {
    const double scale = ScaleOf(square_);
    const DoubleDouble beta =
        terms_ == 1 ? DoubleDouble() : Scaled(Ratio(square_, previousSquare_), scale / scale_);
    const Step step{coefficient_, alpha_, beta, scale};
    const Moments moments = Advance(blocks_, step, fused_);
    coefficient_ = {};  // it is out of the residuals
    if (!(moments.square.high > leastSquare_ * square_.high * scale * scale)) return false;
    AdvanceSeries(step);
    previousSquare_ = square_;
    scale_ = scale;
    Take(moments);
    return true;
  }

  std::size_t Terms() const { return terms_; }

  /// Of x^k.
  double Coefficient(std::size_t k) const {
    return Unscaled(coefficients_[k], scaleY_.Exponent() - static_cast<std::int64_t>(k) * scaleX_.Exponent());
  }

  /// The root of the mean of the squared residuals, `divisor` being the number of points that counts.
  double Deviation(double divisor) const {
    const DoubleDouble squares = SquaredResiduals(blocks_, coefficient_, fused_);
    return Unscaled(SquareRoot<false>(Ratio(squares, {divisor, 0.0})), scaleY_.Exponent());
  }

 private:
  /// Of the range of x; what is smaller drowns in the rounding errors of double-doubles.
  static constexpr double kDiscernible = 0x1p-80;

  void Take(const Moments& moments) {
    square_ = moments.square;
    alpha_ = alpha_ + Ratio(moments.distance, moments.square);
    coefficient_ = Ratio(moments.residual, moments.square);
    ++terms_;
    for (std::size_t k = 0; k < terms_; ++k) {
      coefficients_[k] = coefficients_[k] + Product<false>(current_[k], coefficient_);
    }
  }

  void AdvanceSeries(const Step& step) {
    for (std::size_t k = terms_ + 1; k-- > 0;) {
      const DoubleDouble shifted = k == 0 ? DoubleDouble() : current_[k - 1];
      const DoubleDouble current = shifted - Product<false>(current_[k], step.alpha);
      previous_[k] = Scaled(current, step.scale) - Product<false>(previous_[k], step.beta);
    }
    std::swap(current_, previous_);
  }

  Scaling scaleX_;
  Scaling scaleY_;
  bool fused_;
  std::vector<Block> blocks_;
  double leastSquare_;
  std::size_t terms_ = 0;
  Series coefficients_;
  Series current_;
  Series previous_;
  DoubleDouble square_;
  DoubleDouble previousSquare_;
  DoubleDouble alpha_;
  DoubleDouble coefficient_;
  double scale_ = 1.0;
};

/// The number of different values, counted up to `limit`.
std::size_t CountDifferent(std::span<const double> values, std::size_t limit) {
  std::vector<double> different;
  for (const double value : values) {
    if (different.size() == limit) break;
    if (std::find(different.begin(), different.end(), value) == different.end()) different.push_back(value);
  }
  return different.size();
}

void FitFinitePoints(const Points& points, const Extent& extentX, const Extent& extentY, std::size_t terms,
                     std::span<double> coefficients, double* stdDev, bool fused) {
  const std::size_t supported = CountDifferent(points.xs, terms);
  CurveFit fit(points, extentX, extentY, supported, fused);
  while (fit.Terms() < supported && fit.AddTerm()) continue;

  if (fit.Terms() > 1) {
    for (std::size_t k = 0; k < fit.Terms(); ++k) coefficients[k] = fit.Coefficient(k);
    if (stdDev != nullptr) *stdDev = fit.Deviation(static_cast<double>(points.xs.size() - 1));
  }
  if (fit.Terms() < terms) Raise(kDivisionByZero);
}

}  // namespace

void FitCurve(ArrayView<const double> arX, ArrayView<const double> arY, std::int32_t anFitOrder,
              BoundedArray<double>& arCoeffs, double* arStdDev, bool fused) {
  if (arStdDev != nullptr) *arStdDev = 0.0;
  const std::span<const double> xs = arX.Elements();
  const std::int32_t count = CheckedInt32(static_cast<std::int64_t>(xs.size()));
  const std::int32_t terms = CheckedInt32(std::int64_t{anFitOrder} + 1);
  // The old elements live on, because a caller may pass one array as points and as coefficients.
  const auto replaced = std::exchange(arCoeffs, BoundedArray<double>(Bounds{1, count}));
  if (terms < 1) Raise(kSubscriptOutOfRange);
  const Points points{xs, ElementsAlong(arX, arY)};
  if (terms == 1) return;

  const Extent extentX = ExtentOf(points.xs);
  const Extent extentY = ExtentOf(points.ys);
  const auto termCount = static_cast<std::size_t>(terms);
  if (extentX.isFinite && extentY.isFinite) {
    TranslatingMemoryErrors(
        [&] { FitFinitePoints(points, extentX, extentY, termCount, arCoeffs.Elements(), arStdDev, fused); });
    return;
  }
  if (terms > count) Raise(kDivisionByZero);
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  std::ranges::fill(arCoeffs.Elements().first(termCount), kNaN);
  if (arStdDev != nullptr) *arStdDev = kNaN;
}

}  // namespace vorquill21
