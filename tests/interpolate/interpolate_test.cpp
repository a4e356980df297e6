#include "vorquill21/interpolate/interpolate.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <span>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_error.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/self_test.hpp"
#include "tests/support/short_of_memory.hpp"

namespace vorquill21 {

VORQUILL21_OPEN_SELF_TEST(CInterpolate);

namespace {

using test::ExpectNumberOrErrorSeven;
using test::RaisedNumber;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr std::int32_t kCoincident = 380;

BoundedArray<double> From(std::int32_t lower, std::vector<double> elements) {
  return BoundedArray<double>(std::move(elements), lower);
}

class CInterpolateTest : public testing::Test {
 protected:
  double Linear(EOutOfBoundsBehaviour behaviour, ArrayView<const double> x, ArrayView<const double> y,
                double at) const {
    return interpolate.OneDLinearInterpolate(behaviour, x, y, at);
  }

  test::FakePlatform fake;
  CInterpolate interpolate{fake.platform};
};

// --- Between two points ----------------------------------------------------------------------------------

TEST_F(CInterpolateTest, LineThroughTwoPointsTakesTheQuotientFirst) {
  EXPECT_EQ(interpolate.OneDLinearInterpolateFromPoints(1, 2, 2.2, 10.5, 1), 2.2);
  EXPECT_EQ(interpolate.OneDLinearInterpolateFromPoints(1, 2, 10.5, 30.5, 1.5), 20.5);
  EXPECT_EQ(interpolate.OneDLinearInterpolateFromPoints(0, 3, 0, 1, 3), 1.0 / 3.0 * 3.0);
  EXPECT_EQ(interpolate.OneDLinearInterpolateFromPoints(0, 49, 0, 1, 49), 0x1.fffffffffffffp-1);
}

TEST_F(CInterpolateTest, OnePointIsItsOwnLine) {
  EXPECT_EQ(interpolate.OneDLinearInterpolateFromPoints(1, 1, 5, 5, 1), 5);
}

TEST_F(CInterpolateTest, DeliberateCoincidentPointsRaiseInTheNameOfAnotherClass) {
  struct Row {
    double y2;
    double at;
  };
  for (const Row& row : {Row{6, 1}, Row{5, 2}, Row{5, kNaN}}) {
    EXPECT_EQ(
        test::ErrorRaisedBy([&] { interpolate.OneDLinearInterpolateFromPoints(1, 1, 5, row.y2, row.at); }),
        (test::RaisedError{kCoincident, u"Vorquill21.CMathUtils.OneDLinearInterpolateFromPoints",
                           u"X values are coincident"}));
  }
}

TEST_F(CInterpolateTest, EveryStepOfTheLineMayOverflow) {
  const auto number = [this](double x1, double x2, double y1, double y2, double at) {
    return RaisedNumber([&] { interpolate.OneDLinearInterpolateFromPoints(x1, x2, y1, y2, at); });
  };
  EXPECT_EQ(number(-kLargest, kLargest, 0, 1, 0), kOverflow);
  EXPECT_EQ(number(0, 1, -kLargest, kLargest, 0), kOverflow);
  EXPECT_EQ(number(0, 1e-10, 0, 1e300, 0), kOverflow);
  EXPECT_EQ(number(0, 1, 0, 1e300, 1e10), kOverflow);
  EXPECT_EQ(number(0, 1, kLargest, kLargest, kInfinity), 0);
  EXPECT_EQ(number(0, 1, 1e308, 1.5e308, 3), kOverflow);
}

// --- In a table ------------------------------------------------------------------------------------------

struct Reading {
  EOutOfBoundsBehaviour behaviour;
  double at;
  double expected;
};

TEST_F(CInterpolateTest, AscendingTable) {
  const std::vector<double> x{1, 2, 3};
  const std::vector<double> y{2.2, 10.5, 30.5};
  const Reading readings[] = {
      {eInterpExtrapolate, 1, 2.2},
      {eInterpExtrapolate, 2, 10.5},
      {eInterpExtrapolate, 3, 30.5},
      {eInterpExtrapolate, 2.5, 20.5},
      {eInterpExtrapolate, 0, 2.2 - (10.5 - 2.2)},
      {eInterpExtrapolate, -1, 2.2 - 2 * (10.5 - 2.2)},
      {eInterpExtrapolate, 4, 50.5},
      {eInterpClip, -1, 2.2},
      {eInterpClip, 4, 30.5},
      {eInterpClip, 2.5, 20.5},
      {eInterpClip, 3, 30.5},
  };
  for (const Reading& r : readings) EXPECT_EQ(Linear(r.behaviour, x, y, r.at), r.expected) << r.at;
}

TEST_F(CInterpolateTest, DescendingTable) {
  const std::vector<double> x{3, 2, 1};
  const std::vector<double> y{2.2, 10.5, 30.5};
  const Reading readings[] = {
      {eInterpExtrapolate, 1, 30.5}, {eInterpExtrapolate, 2, 10.5},  {eInterpExtrapolate, 3, 2.2},
      {eInterpExtrapolate, 0, 50.5}, {eInterpExtrapolate, -1, 70.5}, {eInterpClip, -1, 30.5},
      {eInterpClip, 4, 2.2},
  };
  for (const Reading& r : readings) EXPECT_EQ(Linear(r.behaviour, x, y, r.at), r.expected) << r.at;
  EXPECT_NEAR(Linear(eInterpExtrapolate, x, y, 4), -6.1, 1e-14);
}

TEST_F(CInterpolateTest, ANodeGivesItsOwnValueAndTheLastOneIsReachedFromItsLeft) {
  const std::vector<double> x{0, 49, 98};
  const std::vector<double> y{0, 1, 2};
  EXPECT_EQ(Linear(eInterpClip, x, y, 0), 0.0);
  EXPECT_EQ(Linear(eInterpClip, x, y, 49), 0x1.fffffffffffffp-1);  // reached from the first interval
  EXPECT_EQ(Linear(eInterpClip, std::vector<double>{0, 2, 4, 8}, std::vector<double>{1, 2, 5, 9}, 8), 9);
}

TEST_F(CInterpolateTest, DeliberateOneDLinearInterpolateGivesZeroOutsideForOtherBehaviours) {
  const std::vector<double> x{1, 2, 3};
  const std::vector<double> y{2.2, 10.5, 30.5};
  for (const int behaviour : {2, -1}) {
    EXPECT_EQ(Linear(static_cast<EOutOfBoundsBehaviour>(behaviour), x, y, 4), 0.0);
    EXPECT_EQ(Linear(static_cast<EOutOfBoundsBehaviour>(behaviour), x, y, 2.5), 20.5);
  }
}

TEST_F(CInterpolateTest, BoundsAreThoseOfTheArrays) {
  const BoundedArray<double> x = From(5, {1, 2, 3});
  EXPECT_EQ(Linear(eInterpClip, x, From(5, {2.2, 10.5, 30.5}), 2.5), 20.5);
  EXPECT_EQ(Linear(eInterpClip, x, From(4, {9, 2.2, 10.5, 30.5, 9}), 4), 30.5);
  EXPECT_EQ(RaisedNumber([&] {
              Linear(eInterpClip, x, From(0, {2.2, 10.5, 30.5}), 2.5);
            }),
            kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpClip, x, From(5, {2.2, 10.5}), 2.5); }), kSubscriptOutOfRange);
  EXPECT_EQ(Linear(eInterpClip, x, From(5, {2.2, 10.5}), 1.5), 2.2 + (10.5 - 2.2) * 0.5);
}

TEST_F(CInterpolateTest, BoundsMayLieNearTheEndOfTheRangeOfIndices) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const BoundedArray<double> x = From(kMost - 1, {1, 2});
  const BoundedArray<double> y = From(kMost - 1, {10, 30});
  EXPECT_EQ(Linear(eInterpClip, x, y, 1.5), 20);
  EXPECT_EQ(Linear(eInterpClip, x, y, 3), 30);
  EXPECT_EQ(Linear(eInterpExtrapolate, x, y, 3), 50);
  EXPECT_EQ(Linear(eInterpExtrapolate, x, y, 0), -10);
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpExtrapolate, From(kMost, {1}), From(kMost, {10}), 2); }),
            kOverflow);
  EXPECT_EQ(RaisedNumber([&] {
              Linear(eInterpClip, From(kMost - 3, {1, 2, 3, 4}), From(kMost - 3, {1, 2, 3, 4}), 3.5);
            }),
            kOverflow);
}

TEST_F(CInterpolateTest, NegativeZerosAndSubnormalsAreNodes) {
  const std::vector<double> x{-0.0, 5e-324, 1e-323};
  const std::vector<double> y{0, 1e-323, 4e-323};
  EXPECT_EQ(Linear(eInterpClip, x, y, 0.0), 0);
  EXPECT_EQ(Linear(eInterpClip, x, y, 5e-324), 1e-323);
  EXPECT_EQ(Linear(eInterpClip, x, y, 1e-323), 4e-323);
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpClip, x, std::vector<double>{0, 1, 2}, 0.0); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpClip, std::vector<double>{-0.0, 0.0}, y, 0.0); }), kCoincident);
  EXPECT_EQ(interpolate.OneDLinearInterpolateFromPoints(0.0, -0.0, 5, 5, -0.0), 5);
}

TEST_F(CInterpolateTest, TakesBuiltInArraysAndSpans) {
  const double x[] = {1, 2, 3};
  const std::vector<double> y{10, 20, 30};
  EXPECT_EQ(Linear(eInterpClip, x, std::span<const double>(y), 1.5), 15);
}

TEST_F(CInterpolateTest, TablesThatCannotBeSearchedRaise) {
  const std::vector<double> one{2};
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpClip, one, one, 2); }), kSubscriptOutOfRange);
  EXPECT_EQ(Linear(eInterpClip, one, one, 1), 2);
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpExtrapolate, one, one, 1); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] {
              Linear(eInterpClip, From(-1, {1, 2}), From(-1, {1, 2}), 1);
            }),
            eErrMathUtilInvalidArrayLimts);
  const BoundedArray<double> empty = BoundedArray<double>::Empty();
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpClip, empty, empty, 1); }), eErrMathUtilInvalidArrayLimts);
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpClip, BoundedArray<double>(), one, 1); }), kSubscriptOutOfRange);
}

TEST_F(CInterpolateTest, CoincidentNodesRaiseWhereTheyAreMet) {
  const std::vector<double> x{1, 2, 2, 3};
  const std::vector<double> y{1, 2, 3, 4};
  EXPECT_EQ(Linear(eInterpClip, x, y, 1.5), 1.5);
  EXPECT_EQ(RaisedNumber([&] {
              Linear(eInterpExtrapolate, std::vector<double>{1, 2, 2}, y, 3);
            }),
            kCoincident);
}

// --- With bounds -----------------------------------------------------------------------------------------

TEST_F(CInterpolateTest, DeliberateBoundsDecideOnlyAboutTheOutside) {
  const std::vector<double> x{0, 1, 2, 3, 4};
  const std::vector<double> y{0, 10, 30, 60, 100};
  const auto at = [&](EOutOfBoundsBehaviour behaviour, double value) {
    return interpolate.OneDLinearInterpolateWithBounds(behaviour, x, y, value, 1, 3);
  };
  EXPECT_EQ(at(eInterpClip, 0.5), 5);
  EXPECT_EQ(at(eInterpClip, 3.5), 80);
  EXPECT_EQ(at(eInterpClip, -1), 10);
  EXPECT_EQ(at(eInterpClip, 5), 60);
  EXPECT_EQ(at(eInterpExtrapolate, -1), -30);
  EXPECT_EQ(at(eInterpExtrapolate, 5), 120);
}

TEST_F(CInterpolateTest, DeliberateDescendingTableComparesWithItsFirstNodeToExtrapolate) {
  const std::vector<double> x{4, 3, 2, 1, 0};
  const std::vector<double> y{0, 10, 30, 60, 100};
  const auto at = [&](EOutOfBoundsBehaviour behaviour, double value) {
    return interpolate.OneDLinearInterpolateWithBounds(behaviour, x, y, value, 1, 3);
  };
  EXPECT_EQ(at(eInterpExtrapolate, 5), -30);   // above x(1): the line through the points 1 and 2
  EXPECT_EQ(at(eInterpExtrapolate, -1), 120);  // not above it: the one through 3 and 2
  EXPECT_EQ(at(eInterpClip, 5), 10);
  EXPECT_EQ(at(eInterpClip, -1), 60);
}

TEST_F(CInterpolateTest, BoundsOutsideTheTableAreOutOfRangeEvenForValuesInside) {
  const std::vector<double> x{0, 1, 2};
  for (const auto& [lower, upper] : {std::pair{-1, 2}, std::pair{0, 3}}) {
    EXPECT_EQ(RaisedNumber([&, lower = lower, upper = upper] {
                interpolate.OneDLinearInterpolateWithBounds(eInterpClip, x, x, 0.5, lower, upper);
              }),
              kSubscriptOutOfRange);
  }
  EXPECT_EQ(
      RaisedNumber([&] { interpolate.OneDLinearInterpolateWithBounds(eInterpExtrapolate, x, x, -1, 0, 0); }),
      kSubscriptOutOfRange);
}

// --- The host's own search -------------------------------------------------------------------------------

class FixedInterval : public CMathUtils {
 public:
  using CMathUtils::CMathUtils;
  bool ArrayLocate(ArrayView<const double> /*arXVals*/, double /*arX*/,
                   std::int32_t& anIndex) const override {
    anIndex = 0;
    ++calls;
    return true;
  }
  mutable int calls = 0;
};

TEST_F(CInterpolateTest, UsesTheHostsOwnUtilities) {
  const auto own = std::make_shared<FixedInterval>(fake.platform);
  interpolate.moUtils = own;
  const std::vector<double> x{0, 1, 2};
  const std::vector<double> y{0, 1, 10};
  EXPECT_EQ(Linear(eInterpClip, x, y, 2), 2.0);
  EXPECT_EQ(own->calls, 1);
}

TEST_F(CInterpolateTest, WithoutUtilitiesSearchingIsAnInvalidCall) {
  interpolate.moUtils.reset();
  const std::vector<double> x{0, 1};
  EXPECT_EQ(RaisedNumber([&] { Linear(eInterpClip, x, x, 0.5); }), kInvalidProcedureCall);
  EXPECT_EQ(RaisedNumber([&] { interpolate.OneDLinearInterpolateWithBounds(eInterpClip, x, x, 0.5, 0, 1); }),
            kInvalidProcedureCall);
  EXPECT_EQ(interpolate.OneDLinearInterpolateFromPoints(0, 1, 0, 1, 0.5), 0.5);
}

/// Utilities of a host that search as the library does.
class ForwardedSearch : public CMathUtils {
 public:
  using CMathUtils::CMathUtils;
  bool ArrayLocate(ArrayView<const double> arXVals, double arX, std::int32_t& anIndex) const override {
    return CMathUtils::ArrayLocate(arXVals, arX, anIndex);
  }
};

/// What an interpolation gave: its bits, or the number that it raised.
struct Outcome {
  std::uint64_t bits = 0;
  std::int32_t raised = 0;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

class RandomTables {
 public:
  BoundedArray<double> Table() {
    std::vector<double> nodes(Below(12));
    for (double& node : nodes) node = Node();
    const std::size_t order = Below(3);
    if (order == 1) std::ranges::sort(nodes);
    if (order == 2) std::ranges::sort(nodes, std::greater<>());
    return From(static_cast<std::int32_t>(Below(4)) - 1, std::move(nodes));
  }

  double Node() {
    constexpr double kOdd[] = {kNaN, kInfinity, -kInfinity, kLargest, -kLargest, 0x1p-1074};
    return Below(40) == 0 ? kOdd[Below(std::size(kOdd))] : static_cast<double>(Below(30)) * 0.5 - 8.0;
  }

  EOutOfBoundsBehaviour Behaviour() { return Below(2) == 0 ? eInterpClip : eInterpExtrapolate; }

 private:
  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }

  std::mt19937_64 random_{11};
};

TEST_F(CInterpolateTest, FindsTheSameWithoutACallOfItsOwnSearch) {
  CInterpolate forwarded(fake.platform);
  forwarded.moUtils = std::make_shared<ForwardedSearch>(fake.platform);
  const auto outcome = [](const CInterpolate& with, EOutOfBoundsBehaviour behaviour, const auto& x,
                          const auto& y, double at) {
    Outcome result;
    result.raised = RaisedNumber(
        [&] { result.bits = std::bit_cast<std::uint64_t>(with.OneDLinearInterpolate(behaviour, x, y, at)); });
    return result;
  };
  RandomTables random;
  for (int i = 0; i < 200'000; ++i) {
    const BoundedArray<double> x = random.Table();
    const BoundedArray<double> y = random.Table();
    const double at = random.Node();
    const EOutOfBoundsBehaviour behaviour = random.Behaviour();
    ASSERT_EQ(outcome(interpolate, behaviour, x, y, at), outcome(forwarded, behaviour, x, y, at)) << i;
  }
}

// --- Polynomials -----------------------------------------------------------------------------------------

TEST_F(CInterpolateTest, FitsAndEvaluatesACurve) {
  BoundedArray<double> coefficients;
  double deviation = 77.0;
  interpolate.OneDPolynomialFit(From(3, {1, 2, 3, 4}), From(3, {0, 5, 15, 80}), 2, coefficients, &deviation);
  EXPECT_EQ(coefficients, From(1, {37.5, -50, 15, 0}));
  EXPECT_NEAR(deviation, 6.455, 0.0005);
  EXPECT_EQ(interpolate.OneDPolynomialInterpolate(2.5, coefficients), 6.25);
}

TEST_F(CInterpolateTest, FitsAndEvaluatesASurface) {
  BoundedArray<double> coefficients;
  double deviation = 77.0;
  const std::vector<double> x{0, 1, 0, 2};
  const std::vector<double> y{0, 0, 1, 3};
  interpolate.TwoDPolynomialFit(x, y, std::vector<double>{2, 5, 7, 23}, 1, coefficients, &deviation);
  BoundedArray<double> plane({0, 1}, {0, 1});
  plane(0, 0) = 2;
  plane(0, 1) = 3;
  plane(1, 0) = 5;
  EXPECT_EQ(coefficients, plane);
  EXPECT_EQ(deviation, 0.0);
  EXPECT_EQ(interpolate.TwoDPolynomialInterpolate(10, 100, coefficients), 532);
}

TEST_F(CInterpolateTest, DeliberateOneDPolynomialFitOfOrderZeroFitsNothing) {
  BoundedArray<double> coefficients;
  double deviation = 77.0;
  interpolate.OneDPolynomialFit(From(3, {1, 2, 3, 4}), From(3, {0, 5, 15, 80}), 0, coefficients, &deviation);
  EXPECT_EQ(coefficients, From(1, {0, 0, 0, 0}));
  EXPECT_EQ(deviation, 0.0);
}

TEST_F(CInterpolateTest, DeliberateOneDPolynomialFitGivesAnElementForEachPoint) {
  BoundedArray<double> coefficients;
  interpolate.OneDPolynomialFit(From(0, {0, 1, 2, 3, 4}), From(0, {1, 3, 5, 7, 9}), 1, coefficients);
  EXPECT_EQ(coefficients, From(1, {1, 2, 0, 0, 0}));
  EXPECT_EQ(interpolate.OneDPolynomialInterpolate(10, coefficients), 21);
}

TEST_F(CInterpolateTest, DeliberateOneDPolynomialFitDividesByOneLessThanThePointsWhateverTheOrder) {
  BoundedArray<double> coefficients;
  double deviation = 0.0;
  interpolate.OneDPolynomialFit(From(0, {0, 1, 2}), From(0, {0, 1, 0}), 1, coefficients, &deviation);
  EXPECT_EQ(deviation, std::sqrt((2.0 / 3.0) / 2.0));
}

TEST_F(CInterpolateTest, DeliberateOneDPolynomialInterpolateLeavesOutTheElementAtIndexZero) {
  EXPECT_EQ(interpolate.OneDPolynomialInterpolate(3, From(0, {99, 1, 2})), 7);
  EXPECT_EQ(interpolate.OneDPolynomialInterpolate(3, From(-1, {99, 99})), 0);
}

TEST_F(CInterpolateTest, DeliberateOneDPolynomialInterpolateOverflowsInPowersOfCoefficientsThatAreZero) {
  std::vector<double> coefficients(400, 0.0);
  coefficients[0] = 1.0;
  EXPECT_EQ(RaisedNumber([&] { interpolate.OneDPolynomialInterpolate(6, From(1, coefficients)); }),
            kOverflow);
  EXPECT_EQ(interpolate.OneDPolynomialInterpolate(5, From(1, coefficients)), 1.0);
}

TEST_F(CInterpolateTest, DeliberateTwoDPolynomialFitTakesThePowerOfYAsFirstIndex) {
  BoundedArray<double> coefficients;
  const std::vector<double> x{0, 1, 0};
  const std::vector<double> y{0, 0, 1};
  interpolate.TwoDPolynomialFit(x, y, std::vector<double>{2, 5, 7}, 1, coefficients);
  EXPECT_EQ(coefficients(1, 0), 5);
  EXPECT_EQ(coefficients(0, 1), 3);
}

TEST_F(CInterpolateTest, FitsAreTheSameWithoutTheirDeviation) {
  const BoundedArray<double> x = From(3, {1, 2, 3, 4, 7});
  const BoundedArray<double> y = From(3, {0, 5, 15, 80, 2});
  const BoundedArray<double> z = From(3, {1, -1, 4, 4, 9});
  BoundedArray<double> with;
  BoundedArray<double> without;
  double deviation = 77.0;
  interpolate.OneDPolynomialFit(x, y, 2, with, &deviation);
  interpolate.OneDPolynomialFit(x, y, 2, without);
  EXPECT_EQ(with, without);
  interpolate.TwoDPolynomialFit(x, y, z, 1, with, &deviation);
  interpolate.TwoDPolynomialFit(x, y, z, 1, without);
  EXPECT_EQ(with, without);
  EXPECT_EQ(RaisedNumber([&] { interpolate.OneDPolynomialFit(x, y, 5, without); }), kDivisionByZero);
  EXPECT_EQ(RaisedNumber([&] { interpolate.TwoDPolynomialFit(x, y, z, 2, without); }), kDivisionByZero);
}

// --- Memory ----------------------------------------------------------------------------------------------

TEST_F(CInterpolateTest, AShortageOfMemoryRaisesErrorSevenAndNothingElse) {
  const BoundedArray<double> x = From(0, {1, 2, 3, 4, 5, 7});
  const BoundedArray<double> y = From(0, {0, 5, 15, 80, 2, 2});
  const BoundedArray<double> same = From(0, {1, 1, 1, 1, 1, 1});
  const BoundedArray<double> order9({0, 9}, {0, 9});
  BoundedArray<double> coefficients;
  double deviation = 0.0;
  ExpectNumberOrErrorSeven(0, [&] { const CInterpolate other(fake.platform); });
  ExpectNumberOrErrorSeven(0, [&] { interpolate.OneDPolynomialFit(x, y, 3, coefficients, &deviation); });
  ExpectNumberOrErrorSeven(kDivisionByZero, [&] { interpolate.OneDPolynomialFit(same, y, 3, coefficients); });
  ExpectNumberOrErrorSeven(kSubscriptOutOfRange, [&] {
    interpolate.OneDPolynomialFit(x, BoundedArray<double>(), 1, coefficients);
  });
  ExpectNumberOrErrorSeven(0, [&] { interpolate.TwoDPolynomialFit(x, y, x, 1, coefficients, &deviation); });
  ExpectNumberOrErrorSeven(kDivisionByZero, [&] { interpolate.TwoDPolynomialFit(x, x, y, 1, coefficients); });
  ExpectNumberOrErrorSeven(0, [&] { interpolate.TwoDPolynomialInterpolate(2, 3, order9); });
  ExpectNumberOrErrorSeven(kOverflow, [&] { interpolate.TwoDPolynomialInterpolate(1e300, 3, order9); });
  ExpectNumberOrErrorSeven(kCoincident, [&] { Linear(eInterpClip, same, y, 1); });
}

// --- Self-test -------------------------------------------------------------------------------------------

TEST_F(CInterpolateTest, SelfTestPasses) {
  EXPECT_EQ(SelfTest(interpolate), FailedTests{});
}

/// Keeps what it is asked, and says of one place, the first being number 1, that it lies in the interval of a
/// table of three nodes that is farther from it.
class SearchWrongOnce : public CMathUtils {
 public:
  SearchWrongOnce(Platform& platform, std::size_t question) : CMathUtils(platform), question_(question) {}

  bool ArrayLocate(ArrayView<const double> arXVals, double arX, std::int32_t& anIndex) const override {
    (arXVals(0) < arXVals(2) ? ascending : descending).push_back(arX);
    if (ascending.size() + descending.size() != question_)
      return CMathUtils::ArrayLocate(arXVals, arX, anIndex);
    anIndex = std::abs(arX - arXVals(0)) < std::abs(arX - arXVals(2)) ? 1 : 0;
    return true;
  }

  mutable std::vector<double> ascending;
  mutable std::vector<double> descending;

 private:
  std::size_t question_;
};

TEST_F(CInterpolateTest, SelfTestLooksForEachOfItsPlacesAndNoticesAWrongValueThere) {
  const std::vector<double> ascending{1, 2, 3, 2.5, 0, -1, 4, -1, 4};
  const std::vector<double> descending{1, 2, 3, 0, -1, 4, -1};
  const auto right = std::make_shared<SearchWrongOnce>(fake.platform, 0);
  interpolate.moUtils = right;
  EXPECT_EQ(SelfTest(interpolate), FailedTests{});
  EXPECT_EQ(right->ascending, ascending);
  EXPECT_EQ(right->descending, descending);

  std::vector<double> places = ascending;
  places.insert(places.end(), descending.begin(), descending.end());
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (places[i] == 2) continue;  // the middle node belongs to both intervals
    interpolate.moUtils = std::make_shared<SearchWrongOnce>(fake.platform, i + 1);
    EXPECT_EQ(SelfTest(interpolate), FailedTests{u"OneDLinearInterpolate"}) << i;
  }
}

TEST_F(CInterpolateTest, SelfTestNamesTheCheckThatFails) {
  interpolate.moUtils = std::make_shared<FixedInterval>(fake.platform);
  EXPECT_EQ(SelfTest(interpolate), FailedTests{u"OneDLinearInterpolate"});
}

}  // namespace
}  // namespace vorquill21
