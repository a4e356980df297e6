#include "vorquill21/interpolate/surface_fit.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <numeric>
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

// --- Terms -----------------------------------------------------------------------------------------------

/// A number for each product v^i * u^j with i + j <= order; rows of equal i, one behind the other.
template <typename Number>
class Triangle {
 public:
  explicit Triangle(std::size_t order) : order_(order), numbers_((order + 1) * (order + 2) / 2) {}

  std::size_t Order() const { return order_; }
  std::size_t Size() const { return numbers_.size(); }
  Number& operator()(std::size_t i, std::size_t j) { return numbers_[RowOf(i) + j]; }
  const Number& operator()(std::size_t i, std::size_t j) const { return numbers_[RowOf(i) + j]; }

  /// The first number of row i; order - i + 1 of them lie side by side.
  Number* Row(std::size_t i) { return numbers_.data() + RowOf(i); }

 private:
  std::size_t RowOf(std::size_t i) const { return i * (2 * order_ + 3 - i) / 2; }

  std::size_t order_;
  std::vector<Number> numbers_;
};

/// Calls visit(i, j) for all terms, i outermost.
template <typename Visit>
void ForAllTerms(std::size_t order, const Visit& visit) {
  for (std::size_t i = 0; i <= order; ++i) {
    for (std::size_t j = 0; i + j <= order; ++j) visit(i, j);
  }
}

// --- Coordinates -----------------------------------------------------------------------------------------

/// Points side by side in the coordinates u and v, or u and w. A point counts 1, a lane behind the last point
/// 0.
struct Block {
  double one[kLanes] = {};
  Lanes u;
  Lanes v;
  double z[kLanes] = {};
};

/// A coordinate that is scaled by a power of two, has 0 in the middle of the points, and is about 1 at their
/// ends: u = x * 2^-Exponent() - Middle().
class Axis {
 public:
  explicit Axis(const Extent& places) : scale_(places) {
    const double least = scale_(places.least);
    const double greatest = scale_(places.greatest);
    middle_ = 0.5 * least + 0.5 * greatest;
    const double reach = std::max(greatest - middle_, middle_ - least);
    std::frexp(reach, &widening_);
    factor_ = std::ldexp(1.0, -widening_);
  }

  VORQUILL21_INLINED DoubleDouble operator()(double place) const {
    return Scaled(Difference(scale_(place), DoubleDouble{middle_, 0.0}), factor_);
  }
  int Exponent() const { return scale_.Exponent() + widening_; }
  double Middle() const { return middle_ * factor_; }

 private:
  Scaling scale_;
  double middle_ = 0.0;
  double factor_ = 1.0;
  int widening_ = 0;
};

/// How v goes with u: v = slope * u + w * 2^exponent, w being about 1 where it is largest.
struct Shear {
  double slope;
  int exponent;
};

struct Points {
  std::span<const double> xs, ys, zs;
};

VORQUILL21_INLINED void Place(const Points& points, const Axis& u, const Axis& v, const Scaling& scaleZ,
                              std::span<Block> blocks) {
  for (std::size_t first = 0; first < points.xs.size(); first += kLanes) {
    Block& block = blocks[first / kLanes];
    const std::size_t count = std::min(kLanes, points.xs.size() - first);
    for (std::size_t lane = 0; lane < count; ++lane) {
      block.one[lane] = 1.0;
      block.u.Set(lane, u(points.xs[first + lane]));
      block.v.Set(lane, v(points.ys[first + lane]));
      block.z[lane] = scaleZ(points.zs[first + lane]);
    }
  }
}

/// The slope of the straight line through the origin that comes nearest to the points.
VORQUILL21_INLINED double SlopeOf(std::span<const Block> blocks) {
  double products[kLanes] = {};
  double squares[kLanes] = {};
  for (const Block& block : blocks) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      products[lane] += block.u.high[lane] * block.v.high[lane];
      squares[lane] += block.u.high[lane] * block.u.high[lane];
    }
  }
  const double square = std::accumulate(squares, squares + kLanes, 0.0);
  return square == 0.0 ? 0.0 : std::accumulate(products, products + kLanes, 0.0) / square;
}

/// Puts v - slope * u in the place of v; returns the largest absolute value of it.
template <bool fused>
VORQUILL21_INLINED double TakeOutSlope(std::span<Block> blocks, double slope) {
  double reach[kLanes] = {};
  for (Block& block : blocks) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const DoubleDouble rest = block.v[lane] - Product<fused>(block.u[lane], slope);
      block.v.Set(lane, rest);
      const double size = std::abs(rest.high);
      reach[lane] = size > reach[lane] ? size : reach[lane];
    }
  }
  return *std::max_element(reach, reach + kLanes);
}

/// Puts w in the place of v, so that points which nearly lie in line are told apart as well as others. Error
/// 11 when they do lie in line, to the precision of doubles.
template <bool fused>
VORQUILL21_INLINED Shear TakeShear(std::span<Block> blocks) {
  constexpr double kStraight = 0x1p-44;
  Shear shear{SlopeOf(blocks), 0};
  const double reach = TakeOutSlope<fused>(blocks, shear.slope);
  if (reach < kStraight) Raise(kDivisionByZero);
  std::frexp(reach, &shear.exponent);
  const double factor = std::ldexp(1.0, -shear.exponent);
  for (Block& block : blocks) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) block.v.Set(lane, Scaled(block.v[lane], factor));
  }
  return shear;
}

// --- Sums over the points --------------------------------------------------------------------------------

/// Sums over the points of v^i * u^j with i + j <= 2 * order, and of z * v^i * u^j with i + j <= order.
struct Moments {
  Triangle<LaneSums> ofPowers;
  Triangle<LaneSums> ofValues;

  explicit Moments(std::size_t order) : ofPowers(2 * order), ofValues(order) {}
};

template <bool fused>
VORQUILL21_INLINED void Multiply(Lanes& left, const Lanes& right) {
  for (std::size_t lane = 0; lane < kLanes; ++lane) left.Set(lane, Product<fused>(left[lane], right[lane]));
}

template <bool fused>
VORQUILL21_INLINED void AddBlock(const Block& block, Moments& moments) {
  const std::size_t greatest = moments.ofPowers.Order();
  const std::size_t order = moments.ofValues.Order();
  Lanes rowStart;
  for (std::size_t lane = 0; lane < kLanes; ++lane) rowStart.high[lane] = block.one[lane];
  for (std::size_t i = 0; i <= greatest; ++i) {
    Lanes product = rowStart;
    LaneSums* const powers = moments.ofPowers.Row(i);
    for (std::size_t j = 0; i + j <= greatest; ++j) {
      for (std::size_t lane = 0; lane < kLanes; ++lane) powers[j].Add(lane, product[lane]);
      if (i + j <= order) {
        LaneSums& values = moments.ofValues(i, j);
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
          values.Add(lane, QuickProduct<fused>(product[lane], block.z[lane]));
        }
      }
      Multiply<fused>(product, block.u);
    }
    Multiply<fused>(rowStart, block.v);
  }
}

/// What the fit needs to know of the points.
struct Sums {
  Shear shear;
  Moments moments;
};

template <bool fused>
VORQUILL21_INLINED void AddPoints(const Points& points, const Axis& u, const Axis& v, const Scaling& scaleZ,
                                  Sums& sums) {
  std::vector<Block> blocks((points.xs.size() + kLanes - 1) / kLanes);
  Place(points, u, v, scaleZ, blocks);
  if (sums.moments.ofValues.Order() > 0) sums.shear = TakeShear<fused>(blocks);
  for (const Block& block : blocks) AddBlock<fused>(block, sums.moments);
}

#ifdef VORQUILL21_WIDE_INSTRUCTIONS
[[gnu::target("avx2,fma")]] void AddPointsFused(const Points& points, const Axis& u, const Axis& v,
                                                const Scaling& scaleZ, Sums& sums) {
  AddPoints<true>(points, u, v, scaleZ, sums);
}
#endif

void AddPoints(const Points& points, const Axis& u, const Axis& v, const Scaling& scaleZ, Sums& sums,
               [[maybe_unused]] bool fused) {
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  if (fused) return AddPointsFused(points, u, v, scaleZ, sums);
#endif
  AddPoints<false>(points, u, v, scaleZ, sums);
}

// --- Normal equations ------------------------------------------------------------------------------------

using Row = std::vector<DoubleDouble>;  // the coefficients of an equation and its right side

std::vector<Row> NormalEquations(const Moments& moments) {
  const std::size_t order = moments.ofValues.Order();
  std::vector<Row> rows;
  ForAllTerms(order, [&](std::size_t i, std::size_t j) {
    Row& row = rows.emplace_back();
    ForAllTerms(order,
                [&](std::size_t k, std::size_t l) { row.push_back(moments.ofPowers(i + k, j + l).Total()); });
    row.push_back(moments.ofValues(i, j).Total());
  });
  return rows;
}

/// The first of the rows from `column` on whose element in that column has the largest absolute value.
std::size_t PivotRow(const std::vector<Row>& rows, std::size_t column) {
  std::size_t pivot = column;
  for (std::size_t i = column + 1; i < rows.size(); ++i) {
    if (std::abs(rows[i][column].high) > std::abs(rows[pivot][column].high)) pivot = i;
  }
  return pivot;
}

/// Takes the multiple of `pivot` from `row` that makes its element in `column` 0.
void Reduce(Row& row, const Row& pivot, std::size_t column) {
  const DoubleDouble factor = -Quotient<false>(row[column], pivot[column]);
  for (std::size_t j = column; j < row.size(); ++j) row[j] = row[j] + Product<false>(pivot[j], factor);
}

/// The solution; error 11 when a pivot is nothing beside `size`.
Row Solve(std::vector<Row> rows, double size) {
  constexpr double kDiscernible = 0x1p-80;
  for (std::size_t column = 0; column < rows.size(); ++column) {
    std::swap(rows[column], rows[PivotRow(rows, column)]);
    if (!(std::abs(rows[column][column].high) > size * kDiscernible)) Raise(kDivisionByZero);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (i != column) Reduce(rows[i], rows[column], column);
    }
  }
  Row solution;
  for (std::size_t i = 0; i < rows.size(); ++i)
    solution.push_back(Quotient<false>(rows[i].back(), rows[i][i]));
  return solution;
}

// --- The fit ---------------------------------------------------------------------------------------------

using Coefficients = Triangle<DoubleDouble>;

/// Puts (a - amount * b) in the place of a in a polynomial: source(k, l) is the coefficient of its k-th power
/// of a, of which target(k, l) * b is one power less.
template <typename Target, typename Source>
void Substitute(std::size_t order, double amount, const Target& target, const Source& source) {
  for (std::size_t done = 0; done < order; ++done) {
    for (std::size_t k = order; k-- > done;) {
      for (std::size_t l = 0; k + 1 + l <= order; ++l) {
        target(k, l) = target(k, l) - Product<false>(source(k + 1, l), amount);
      }
    }
  }
}

/// From powers of w and u to powers of v and u, and on to those of the scaled y and x.
void ToScaledPlaces(Coefficients& coefficients, const Shear& shear, double middleOfV, double middleOfU) {
  const std::size_t order = coefficients.Order();
  ForAllTerms(order, [&](std::size_t i, std::size_t j) {
    coefficients(i, j) = Scaled(coefficients(i, j), std::ldexp(1.0, -shear.exponent * static_cast<int>(i)));
  });
  const auto byRow = [&](std::size_t k, std::size_t l) -> DoubleDouble& { return coefficients(k, l); };
  const auto byColumn = [&](std::size_t k, std::size_t l) -> DoubleDouble& { return coefficients(l, k); };
  const auto oneColumnOn = [&](std::size_t k, std::size_t l) -> DoubleDouble& {
    return coefficients(k, l + 1);
  };
  Substitute(order, shear.slope, oneColumnOn, byRow);
  Substitute(order, middleOfV, byRow, byRow);
  Substitute(order, middleOfU, byColumn, byColumn);
}

void FitFinitePoints(const Points& points, const Extent& xs, const Extent& ys, const Extent& zs,
                     std::size_t order, BoundedArray<double>& results, bool fused) {
  Coefficients coefficients(order);
  if (coefficients.Size() > points.xs.size()) Raise(kDivisionByZero);
  const Axis u(xs);
  const Axis v(ys);
  const Scaling scaleZ(zs);
  Sums sums{{0.0, 0}, Moments(order)};
  AddPoints(points, u, v, scaleZ, sums, fused);
  const Row solution = Solve(NormalEquations(sums.moments), static_cast<double>(points.xs.size()));
  std::size_t term = 0;
  ForAllTerms(order, [&](std::size_t i, std::size_t j) { coefficients(i, j) = solution[term++]; });
  ToScaledPlaces(coefficients, sums.shear, v.Middle(), u.Middle());
  ForAllTerms(order, [&](std::size_t i, std::size_t j) {
    const std::int64_t exponent = scaleZ.Exponent() - static_cast<std::int64_t>(i) * v.Exponent() -
                                  static_cast<std::int64_t>(j) * u.Exponent();
    results(static_cast<std::int32_t>(i), static_cast<std::int32_t>(j)) =
        Unscaled(coefficients(i, j), exponent);
  });
}

/// What arithmetic makes of points that are not finite.
void SpreadNaN(const Points& points, std::size_t order, BoundedArray<double>& results) {
  if (Triangle<double>(order).Size() > points.xs.size()) Raise(kDivisionByZero);
  ForAllTerms(order, [&](std::size_t i, std::size_t j) {
    results(static_cast<std::int32_t>(i), static_cast<std::int32_t>(j)) =
        std::numeric_limits<double>::quiet_NaN();
  });
}

/// What the surface leaves of z at the points.
std::vector<double> ResidualsOf(const Points& points, const BoundedArray<double>& coefficients) {
  std::vector<double> residuals(points.xs.size());
  for (std::size_t k = 0; k < residuals.size(); ++k) {
    const double fitted = EvaluateSurface(points.xs[k], points.ys[k], coefficients);
    residuals[k] = Checked(points.zs[k] - fitted, points.zs[k], fitted);
  }
  return residuals;
}

/// sqrt(mean of squares), rounded once.
double RootMeanSquare(std::span<const double> numbers) {
  const Extent extent = ExtentOf(numbers);
  if (!extent.isFinite) return std::numeric_limits<double>::quiet_NaN();
  const Scaling scale(extent);
  LaneSums squares;
  for (std::size_t first = 0; first < numbers.size(); first += kLanes) {
    const auto block = numbers.subspan(first, std::min(kLanes, numbers.size() - first));
    for (std::size_t lane = 0; lane < block.size(); ++lane) {
      const double scaled = scale(block[lane]);
      const ErrorFree square = TwoProduct<false>(scaled, scaled);
      squares.Add(lane, {square.value, square.error});
    }
  }
  const DoubleDouble count{static_cast<double>(numbers.size()), 0.0};
  return Unscaled(SquareRoot<false>(Quotient<false>(squares.Total(), count)), scale.Exponent());
}

// --- Evaluation ------------------------------------------------------------------------------------------

/// Element (0, 0) of a square of coefficients, and how far it is from row to row.
struct Square {
  const double* constant;
  std::size_t width;
};

/// Of an order that the compiler knows, so that all products stay in registers: x^j, and in row i y^i * x^j.
template <std::size_t order>
double EvaluateOrder(double x, double y, const Square& square) {
  double products[order + 1] = {1.0};
  double sum = 0.0;
#pragma GCC unroll 8
  for (std::size_t j = 1; j <= order; ++j) {
    products[j] = products[j - 1] * x;
    sum += products[j] * square.constant[j];
  }
#pragma GCC unroll 8
  for (std::size_t i = 1; i <= order; ++i) {
#pragma GCC unroll 8
    for (std::size_t j = 0; j <= order - i; ++j) {
      products[j] *= y;
      sum += square.constant[i * square.width + j] * products[j];
    }
  }
  return sum + *square.constant;
}

using Evaluation = double (*)(double, double, const Square&);
constexpr Evaluation kEvaluations[] = {nullptr,          EvaluateOrder<1>, EvaluateOrder<2>,
                                       EvaluateOrder<3>, EvaluateOrder<4>, EvaluateOrder<5>,
                                       EvaluateOrder<6>, EvaluateOrder<7>};

double CheckedProduct(double left, double right) {
  return Checked(left * right, left, right);
}

double CheckedSum(double left, double right) {
  return Checked(left + right, left, right);
}

/// The same, of any order, every element and every operation being checked in its turn.
[[gnu::cold, gnu::noinline]] double EvaluateWithFaults(double x, double y,
                                                       const BoundedArray<double>& coefficients) {
  const std::int32_t order = coefficients.UpperBound(1);
  if (coefficients.LowerBound(1) > 0) Raise(kSubscriptOutOfRange);  // before memory is taken for the order
  BoundedArray<double> products(Bounds{0, order});
  products(0) = 1.0;
  double sum = 0.0;
  for (std::int32_t j = 1; j <= order; ++j) {
    products(j) = CheckedProduct(products(j - 1), x);
    sum = CheckedSum(sum, CheckedProduct(products(j), coefficients(0, j)));
  }
  for (std::int32_t i = 1; i <= order; ++i) {
    for (std::int32_t j = 0; j <= order - i; ++j) {
      products(j) = CheckedProduct(products(j), y);
      sum = CheckedSum(sum, CheckedProduct(coefficients(i, j), products(j)));
    }
  }
  return CheckedSum(sum, coefficients(0, 0));
}

/// Whether all elements from (0, 0) to (order, order) are there.
bool IsSquareFromZero(const BoundedArray<double>& coefficients, std::int32_t order) {
  return coefficients.Rank() == 2 && coefficients.LowerBound(1) <= 0 && coefficients.LowerBound(2) <= 0 &&
         coefficients.UpperBound(2) >= order;
}

}  // namespace

void FitSurface(ArrayView<const double> arXData, ArrayView<const double> arYData,
                ArrayView<const double> arZData, std::int32_t anFitOrder, BoundedArray<double>& arCoeffs,
                double* arRMSDeviation, bool fused) {
  if (arXData.Elements().empty()) Raise(kSubscriptOutOfRange);
  // The old elements live on, because a caller may pass one array as points and as coefficients.
  const auto replaced =
      std::exchange(arCoeffs, BoundedArray<double>(Bounds{0, anFitOrder}, Bounds{0, anFitOrder}));
  const Points points{arXData.Elements(), ElementsAlong(arXData, arYData), ElementsAlong(arXData, arZData)};
  TranslatingMemoryErrors([&] {
    const auto order = static_cast<std::size_t>(anFitOrder);
    const Extent xs = ExtentOf(points.xs);
    const Extent ys = ExtentOf(points.ys);
    const Extent zs = ExtentOf(points.zs);
    if (xs.isFinite && ys.isFinite && zs.isFinite) {
      FitFinitePoints(points, xs, ys, zs, order, arCoeffs, fused);
    } else {
      SpreadNaN(points, order, arCoeffs);
    }
    if (arRMSDeviation != nullptr) *arRMSDeviation = RootMeanSquare(ResidualsOf(points, arCoeffs));
  });
}

double EvaluateSurface(double arX, double arY, const BoundedArray<double>& arCoeffs) {
  const std::int32_t order = arCoeffs.UpperBound(1);
  if (order <= 0) return arCoeffs(0, 0);
  if (static_cast<std::size_t>(order) < std::size(kEvaluations) && IsSquareFromZero(arCoeffs, order)) {
    const Square square{&arCoeffs(0, 0), static_cast<std::size_t>(arCoeffs.BoundsOf(2).Count())};
    const double result = kEvaluations[order](arX, arY, square);
    if (std::isfinite(result)) return result;
  }
  return EvaluateWithFaults(arX, arY, arCoeffs);
}

}  // namespace vorquill21
