#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/interpolate/interpolate.hpp"
#include "vorquill21/numeric/elementary.hpp"

namespace vorquill21 {
namespace {

constexpr std::int32_t kCoincident = 380;

// --- The promised steps ----------------------------------------------------------------------------------

// Each result is looked at where it arises, and nothing is done in any other order than the promised one.

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

/// The bits of a result, or the number that was raised instead.
struct Outcome {
  std::uint64_t bits = 0;
  std::int32_t raised = 0;
  friend bool operator==(const Outcome&, const Outcome&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << std::bit_cast<double>(outcome.bits) << " raised " << outcome.raised;
  }
};

template <typename Operation>
Outcome OutcomeOf(Operation operation) {
  Outcome outcome;
  outcome.raised = test::RaisedNumber([&] {
    const double result = operation();
    outcome.bits = std::isnan(result) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(result);
  });
  return outcome;
}

class InterpolateStepsTest : public testing::Test {
 protected:
  /// Plain numbers mostly, often a few of them equal; some beside which a difference or product overflows.
  double Number() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kOdd[] = {0.0,      -0.0,  0x1p-1074, 0x1p-300,   1e200, -1e200,
                               0x1p1023, 1e-30, kInfinity, -kInfinity, kNaN,  0x1.8p1023};
    if (Below(25) == 0) return kOdd[Below(std::size(kOdd))];
    if (Below(2) == 0) return static_cast<double>(Below(9)) - 4.0;
    return normal_(random_);
  }

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

  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }

  test::FakePlatform fake_;
  CInterpolate interpolate_{fake_.platform};
  std::mt19937_64 random_{43};
  std::normal_distribution<double> normal_;
};

TEST_F(InterpolateStepsTest, LinesComeToWhatTheirStepsComeTo) {
  int faults = 0;
  for (int round = 0; round < 200'000; ++round) {
    const double x1 = Number();
    const double x2 = Number();
    const double y1 = Number();
    const double y2 = Number();
    const double at = Below(4) == 0 ? x1 : Number();
    const Outcome expected = OutcomeOf([&] { return LineBySteps(x1, x2, y1, y2, at); });
    ASSERT_EQ(OutcomeOf([&] { return interpolate_.OneDLinearInterpolateFromPoints(x1, x2, y1, y2, at); }),
              expected)
        << x1 << ' ' << x2 << ' ' << y1 << ' ' << y2 << ' ' << at;
    faults += expected.raised != 0 ? 1 : 0;
  }
  EXPECT_GT(faults, 1000);
}

TEST_F(InterpolateStepsTest, TablesComeToWhatTheirStepsComeTo) {
  const CMathUtils utils(fake_.platform);
  int faults = 0;
  for (int round = 0; round < 200'000; ++round) {
    const Table table = NextTable();
    const auto behaviour = static_cast<EOutOfBoundsBehaviour>(Below(3));
    const double at = Number();
    const std::int32_t lower = table.x.LowerBound();
    const std::int32_t upper = table.x.UpperBound();
    const Outcome expected =
        OutcomeOf([&] { return TableBySteps(utils, behaviour, table, at, lower, upper); });
    ASSERT_EQ(OutcomeOf([&] { return interpolate_.OneDLinearInterpolate(behaviour, table.x, table.y, at); }),
              expected)
        << round;
    faults += expected.raised != 0 ? 1 : 0;

    const std::int32_t from = lower + static_cast<std::int32_t>(Below(4)) - 1;
    const std::int32_t to = upper - static_cast<std::int32_t>(Below(4)) + 1;
    ASSERT_EQ(OutcomeOf([&] {
                return interpolate_.OneDLinearInterpolateWithBounds(behaviour, table.x, table.y, at, from,
                                                                    to);
              }),
              OutcomeOf([&] { return TableBySteps(utils, behaviour, table, at, from, to); }))
        << round;
  }
  EXPECT_GT(faults, 1000);
}

TEST_F(InterpolateStepsTest, CurvesComeToWhatTheirStepsComeTo) {
  int faults = 0;
  for (int round = 0; round < 50'000; ++round) {
    BoundedArray<double> coefficients = Numbers(1 + Below(30), static_cast<std::int32_t>(Below(3)) - 1);
    for (double& coefficient : coefficients.Elements()) {
      if (Below(3) == 0) coefficient = 0.0;
    }
    const double x = Below(10) == 0 ? std::ldexp(Number(), static_cast<int>(Below(200)) - 100) : Number();
    const Outcome expected = OutcomeOf([&] { return CurveBySteps(x, coefficients); });
    ASSERT_EQ(OutcomeOf([&] { return interpolate_.OneDPolynomialInterpolate(x, coefficients); }), expected)
        << std::hexfloat << x << ' ' << testing::PrintToString(coefficients.Elements());
    faults += expected.raised != 0 ? 1 : 0;
  }
  EXPECT_GT(faults, 200);
}

}  // namespace
}  // namespace vorquill21
