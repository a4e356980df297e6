#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "tests/support/promised_steps.hpp"
#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/interpolate/interpolate.hpp"
#include "vorquill21/numeric/elementary.hpp"

namespace vorquill21 {
namespace {

constexpr std::int32_t kCoincident = 380;

// --- The promised steps ----------------------------------------------------------------------------------

double LineBySteps(double x1, double x2, double y1, double y2, double x) {
  const double dx = CheckedDifference(x2, x1);
  const double dy = CheckedDifference(y2, y1);
  if (dx == 0.0) {
    if (dy == 0.0 && x == x1) return y1;
    throw LibraryError(kCoincident, u"", u"");
  }
  return CheckedSum(CheckedProduct(CheckedQuotient(dy, dx), CheckedDifference(x, x1)), y1);
}

struct Table {
  BoundedArray<double> x;
  BoundedArray<double> y;

  double Line(std::int32_t from, std::int32_t to, double at) const {
    return LineBySteps(x(from), x(to), y(from), y(to), at);
  }
};

double TableBySteps(const CMathUtils& utils, EOutOfBoundsBehaviour behaviour, const Table& table, double at,
                    std::int32_t lower, std::int32_t upper) {
  std::int32_t k = 0;
  const bool isInside = utils.ArrayLocate(table.x, at, k);
  const double first = table.x(lower);
  const double last = table.x(upper);
  const bool isAscending = first < last;
  if (isInside) return table.Line(k, k + 1, at);
  if (behaviour == eInterpClip) {
    if (isAscending) return at < first ? table.y(lower) : table.y(upper);
    return at <= last ? table.y(upper) : table.y(lower);
  }
  if (behaviour != eInterpExtrapolate) return 0.0;
  const bool isAtUpper = isAscending ? !(at < first) : at <= first;
  return isAtUpper ? table.Line(upper, upper - 1, at) : table.Line(lower, lower + 1, at);
}

double CurveBySteps(double x, const BoundedArray<double>& coefficients) {
  double sum = 0.0;
  for (std::int32_t k = 1; k <= coefficients.UpperBound(); ++k) {
    const double power = Checked(IntegerPower(x, static_cast<std::uint32_t>(k - 1)), x);
    sum = CheckedSum(sum, CheckedProduct(coefficients(k), power));
  }
  return sum;
}

// --- The comparison --------------------------------------------------------------------------------------

class InterpolateStepsTest : public test::PromisedStepsTest<double> {
 protected:
  InterpolateStepsTest() : PromisedStepsTest(43, 25) {}

  BoundedArray<double> Numbers(std::size_t count, std::int32_t lower) {
    std::vector<double> numbers(count);
    for (double& number : numbers) number = Number();
    return BoundedArray<double>(std::move(numbers), lower);
  }

  Table NextTable() {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLowers[] = {0, 1, 2, 5, -1, kMost / 2 - 3, kMost - 20};
    const std::int32_t lower = kLowers[Below(std::size(kLowers))];
    Table table{Numbers(1 + Below(9), lower), Numbers(1 + Below(11), lower)};
    const std::span<double> nodes = table.x.Elements();
    const std::size_t order = Below(5);
    const auto hasNaN = std::ranges::any_of(nodes, [](double node) { return std::isnan(node); });
    if (order < 2 && !hasNaN) std::ranges::sort(nodes);
    if (order > 2 && !hasNaN) std::ranges::sort(nodes, std::greater<>());
    return table;
  }

  CInterpolate interpolate_{fake_.platform};
};

TEST_F(InterpolateStepsTest, LinesComeToWhatTheirStepsComeTo) {
  for (int round = 0; round < 200'000; ++round) {
    const double x1 = Number();
    const double x2 = Number();
    const double y1 = Number();
    const double y2 = Number();
    const double at = Below(4) == 0 ? x1 : Number();
    ASSERT_TRUE(
        Agree([&](double& y) { y = interpolate_.OneDLinearInterpolateFromPoints(x1, x2, y1, y2, at); },
              [&](double& y) { y = LineBySteps(x1, x2, y1, y2, at); }))
        << x1 << ' ' << x2 << ' ' << y1 << ' ' << y2 << ' ' << at;
  }
  EXPECT_GT(Faults(), 1000);
}

TEST_F(InterpolateStepsTest, TablesComeToWhatTheirStepsComeTo) {
  const CMathUtils utils(fake_.platform);
  for (int round = 0; round < 200'000; ++round) {
    const Table table = NextTable();
    const auto behaviour = static_cast<EOutOfBoundsBehaviour>(Below(3));
    const double at = Number();
    const std::int32_t lower = table.x.LowerBound();
    const std::int32_t upper = table.x.UpperBound();
    ASSERT_TRUE(
        Agree([&](double& y) { y = interpolate_.OneDLinearInterpolate(behaviour, table.x, table.y, at); },
              [&](double& y) { y = TableBySteps(utils, behaviour, table, at, lower, upper); }))
        << round;

    const std::int32_t from = lower + static_cast<std::int32_t>(Below(4)) - 1;
    const std::int32_t to = upper - static_cast<std::int32_t>(Below(4)) + 1;
    ASSERT_TRUE(Agree(
        [&](double& y) {
          y = interpolate_.OneDLinearInterpolateWithBounds(behaviour, table.x, table.y, at, from, to);
        },
        [&](double& y) { y = TableBySteps(utils, behaviour, table, at, from, to); }))
        << round;
  }
  EXPECT_GT(Faults(), 150'000);
}

TEST_F(InterpolateStepsTest, CurvesComeToWhatTheirStepsComeTo) {
  for (int round = 0; round < 50'000; ++round) {
    BoundedArray<double> coefficients = Numbers(1 + Below(30), static_cast<std::int32_t>(Below(3)) - 1);
    for (double& coefficient : coefficients.Elements()) {
      if (Below(3) == 0) coefficient = 0.0;
    }
    const double x = Below(10) == 0 ? std::ldexp(Number(), static_cast<int>(Below(200)) - 100) : Number();
    ASSERT_TRUE(Agree([&](double& y) { y = interpolate_.OneDPolynomialInterpolate(x, coefficients); },
                      [&](double& y) { y = CurveBySteps(x, coefficients); }))
        << std::hexfloat << x << ' ' << testing::PrintToString(coefficients.Elements());
  }
  EXPECT_GT(Faults(), 200);
}

}  // namespace
}  // namespace vorquill21
