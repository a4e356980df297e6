#include "vorquill21/numeric/trigonometry.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <ostream>
#include <random>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/self_test.hpp"
#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/elementary.hpp"

namespace vorquill21 {

VORQUILL21_OPEN_SELF_TEST(CTrigonometry);

namespace {

using test::RaisedNumber;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kP = 0x1.921fb54442d11p+1;
constexpr double kH = 0x1.921fb54442d11p+0;

class CTrigonometryTest : public testing::Test {
 protected:
  test::FakePlatform fake;
  CTrigonometry trigonometry{fake.platform};
};

TEST_F(CTrigonometryTest, DeliberatePiIsAStoredDoubleALittleBelowPi) {
  const Variant pi = trigonometry.Pi();
  ASSERT_TRUE(pi.Holds<double>());
  EXPECT_EQ(std::bit_cast<std::uint64_t>(pi.As<double>()), 0x400921FB54442D11u);
  EXPECT_EQ(pi.As<double>(), 3.14159265358979);
}

TEST_F(CTrigonometryTest, ArcSinAndArcCosBelowOne) {
  struct Row {
    double value;
    double sine;
    double cosine;
  };
  const Row rows[] = {
      {0.0, 0.0, kH},
      {-0.5, -0x1.0c152382d7366p-1, 0x1.0c152382d7362p+1},
      {0.5, 0x1.0c152382d7366p-1, 0x1.0c152382d735ep+0},
      {0.1, 0x1.9a49276037884p-4, 0x1.787b22ce3f589p+0},
      {0.999, 0x1.86ac9ad18f805p+0, 0x1.6e634e566a180p-5},
      {-0.999999999, -0x1.921cc6f77ca98p+0, 0x1.921e3e1ddfbd4p+1},
      {1e-10, 0x1.b7cdfd9d7bdbbp-34, 0x1.921fb543d4dd9p+0},
      {0.7071067811865476, 0x1.921fb54442d19p-1, 0x1.921fb54442d09p-1},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(trigonometry.ArcSin(row.value), row.sine) << row.value;
    EXPECT_EQ(trigonometry.ArcCos(row.value), row.cosine) << row.value;
  }
}

TEST_F(CTrigonometryTest, DeliberateArcSinAndArcCosHaveNoErrorOutsideTheDomain) {
  for (const double value : {1.0, 1.0000000000000002, 1.5, 7.0, kLargest, kInfinity}) {
    EXPECT_EQ(trigonometry.ArcSin(value), kH);
    EXPECT_EQ(trigonometry.ArcSin(-value), -kH);
    EXPECT_EQ(trigonometry.ArcCos(value), 0.0);
    EXPECT_EQ(trigonometry.ArcCos(-value), kP);
  }
  EXPECT_EQ(kH, 1.570796326794895);
}

TEST_F(CTrigonometryTest, ArcTan2OnTheAxesAndInTheQuadrants) {
  struct Row {
    double x;
    double y;
    double angle;
  };
  const Row rows[] = {
      {0, 0, 0.0},
      {0, 3, kH},
      {0, -3, -kH},
      {-0.0, 5e-324, kH},
      {1, 0, 0.0},
      {1, 1, 0x1.921fb54442d18p-1},
      {3, -4, -0x1.dac670561bb4fp-1},
      {2.5, 1e-3, 0x1.a36e2d3a776a7p-12},
      {1e-300, 1, 0x1.921fb54442d18p+0},
      {-1, -1, -0x1.2d97c7f3321cbp+1},
      {-3, -4, -0x1.1b6e192ebbe3dp+1},
  };
  for (const Row& row : rows)
    EXPECT_EQ(trigonometry.ArcTan2(row.x, row.y), row.angle) << row.x << ' ' << row.y;
}

TEST_F(CTrigonometryTest, DeliberateArcTan2AddsNoHalfTurnLeftOfTheVerticalAxis) {
  EXPECT_EQ(trigonometry.ArcTan2(-1, 1), -0x1.921fb54442d18p-1);
  EXPECT_EQ(trigonometry.ArcTan2(-3, 4), -0x1.dac670561bb4fp-1);
  EXPECT_EQ(trigonometry.ArcTan2(-2, 0), 0.0);
}

TEST_F(CTrigonometryTest, DeliberateDegreesOfPiAre360AndRadiansTheInverse) {
  EXPECT_EQ(trigonometry.Degrees(kP), 360.0);
  EXPECT_EQ(trigonometry.Degrees(1), 0x1.ca5dc1a63c200p+6);
  EXPECT_EQ(trigonometry.Degrees(0.1), 0x1.6eb167b83019ap+3);
  EXPECT_EQ(trigonometry.Radians(180), kH);
  EXPECT_EQ(trigonometry.Radians(90), kP / 4);
  EXPECT_EQ(trigonometry.Radians(37), 0x1.4aa29abaf85c4p-2);
}

TEST_F(CTrigonometryTest, PolarToXY) {
  struct Row {
    double radians;
    double radius;
    double x;
    double y;
  };
  const Row rows[] = {
      {0, 2, 2, 0},
      {1, 2, 0x1.14a280fb5068cp+0, 0x1.aed548f090ceep+0},
      {0.5, -3, -0x1.50fde04c49dfcp+1, -0x1.7032e57384474p+0},
      {kP, 1, -1, 0x1.d1a62633145c0p-49},
      {kH, 1, 0x1.d1a62633145c0p-50, 1},
      {1e22, 1, 0x1.0be2cef01c8f4p-1, -0x1.b453ab76bf397p-1},
      {100, 0.1, 0x1.6134aff851980p-4, -0x1.9ed0925ad4927p-5},
  };
  for (const Row& row : rows) {
    double x = 77.0;
    double y = 77.0;
    trigonometry.PolarToXY(row.radians, row.radius, x, y);
    EXPECT_EQ(x, row.x) << row.radians;
    EXPECT_EQ(y, row.y) << row.radians;
  }
}

TEST_F(CTrigonometryTest, XYToPolarKeepsTheRuleOfTheQuadrants) {
  double radians = 77.0;
  double radius = 77.0;
  trigonometry.XYToPolar(-1, 1, radians, radius);
  EXPECT_EQ(radians, -0x1.921fb54442d18p-1);
  EXPECT_EQ(radius, 0x1.6a09e667f3bcdp+0);
  trigonometry.XYToPolar(-3, -4, radians, radius);
  EXPECT_EQ(radians, -0x1.1b6e192ebbe3dp+1);
  EXPECT_EQ(radius, 5.0);
}

TEST_F(CTrigonometryTest, OverflowIsAnErrorAndKeepsWhatWasWrittenBefore) {
  EXPECT_EQ(RaisedNumber([&] { trigonometry.ArcTan2(1e-300, 1e300); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { trigonometry.Degrees(1e307); }), kOverflow);
  EXPECT_EQ(RaisedNumber([&] { trigonometry.Radians(kLargest); }), 0);

  double radians = 77.0;
  double radius = 77.0;
  EXPECT_EQ(RaisedNumber([&] { trigonometry.XYToPolar(1e200, 1e200, radians, radius); }), kOverflow);
  EXPECT_EQ(radians, 0x1.921fb54442d18p-1);
  EXPECT_EQ(radius, 77.0);

  radians = 77.0;
  EXPECT_EQ(RaisedNumber([&] { trigonometry.XYToPolar(1e-300, 1e300, radians, radius); }), kOverflow);
  EXPECT_EQ(radians, 77.0);
}

TEST_F(CTrigonometryTest, InfiniteAndUndefinedArgumentsPass) {
  EXPECT_TRUE(std::isnan(trigonometry.ArcSin(kNaN)));
  EXPECT_TRUE(std::isnan(trigonometry.ArcCos(kNaN)));
  EXPECT_TRUE(std::isnan(trigonometry.ArcTan2(kNaN, 1)));
  EXPECT_TRUE(std::isnan(trigonometry.ArcTan2(0, kNaN)));
  EXPECT_EQ(trigonometry.ArcTan2(kInfinity, 1), 0.0);
  EXPECT_EQ(trigonometry.Degrees(-kInfinity), -kInfinity);
  double x = 77.0;
  double y = 77.0;
  trigonometry.PolarToXY(kInfinity, 1, x, y);
  EXPECT_TRUE(std::isnan(x));
  EXPECT_TRUE(std::isnan(y));
  trigonometry.XYToPolar(1, kInfinity, x, y);
  EXPECT_EQ(y, kInfinity);
}

// --- The promised steps ----------------------------------------------------------------------------------

// Each result is looked at where it arises, and nothing is done in any other order than the promised one.

double SignOf(double value) {
  if (value > 0.0) return 1.0;
  if (value < 0.0) return -1.0;
  return value == 0.0 ? 0.0 : value;
}

double ArcSinBySteps(double v) {
  if (!(std::abs(v) < 1.0)) return SignOf(v) * (kP / 2);
  return ArcTangent(CheckedQuotient(v, std::sqrt(CheckedDifference(1.0, CheckedProduct(v, v)))));
}

double ArcCosBySteps(double v) {
  if (!(std::abs(v) < 1.0)) return kP / 2 - SignOf(v) * (kP / 2);
  return kP / 2 - ArcTangent(CheckedQuotient(v, std::sqrt(CheckedDifference(1.0, CheckedProduct(v, v)))));
}

double ArcTan2BySteps(double x, double y) {
  if (x == 0.0) return SignOf(y) * (kP / 2);
  const double angle = ArcTangent(CheckedQuotient(y, x));
  return x < 0.0 && y < 0.0 ? angle - kP : angle;
}

/// Two by-reference results, and the number that was raised.
struct Outcome {
  double first = 77.0;
  double second = 77.0;
  std::int32_t raised = 0;

  template <typename Operation>
  explicit Outcome(Operation operation) {
    raised = RaisedNumber([&] { operation(first, second); });
  }
  friend bool operator==(const Outcome& left, const Outcome& right) {
    return left.raised == right.raised && IsSame(left.first, right.first) &&
           IsSame(left.second, right.second);
  }
  friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << std::hexfloat << outcome.first << ' ' << outcome.second << " raised " << outcome.raised;
  }

 private:
  static bool IsSame(double left, double right) {
    return std::isnan(left) ? std::isnan(right)
                            : std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
  }
};

TEST_F(CTrigonometryTest, EveryResultIsWhatItsStepsComeTo) {
  constexpr double kOdd[] = {
      0.0,    -0.0,     1.0,       -1.0,      0x1.fffffffffffffp-1, 5e-324, -5e-324, 1e-300, 1e154, 1e200,
      -1e300, kLargest, -kLargest, kInfinity, -kInfinity,           kNaN};
  std::mt19937_64 random(19);
  std::normal_distribution<double> normal;
  const auto number = [&] {
    if (random() % 4 == 0) return kOdd[random() % std::size(kOdd)];
    return random() % 3 == 0 ? static_cast<double>(random() % 7) - 3.0 : normal(random);
  };
  int faults = 0;
  const auto expectSame = [&](auto operation, auto steps) {
    const Outcome expected(steps);
    EXPECT_EQ(Outcome(operation), expected);
    faults += expected.raised == kOverflow ? 1 : 0;
  };
  for (int round = 0; round < 50'000 && !HasFailure(); ++round) {
    const double a = number();
    const double b = number();
    SCOPED_TRACE(testing::Message() << std::hexfloat << a << ' ' << b);
    expectSame([&](double& r, double&) { r = trigonometry.ArcSin(a); },
               [&](double& r, double&) { r = ArcSinBySteps(a); });
    expectSame([&](double& r, double&) { r = trigonometry.ArcCos(a); },
               [&](double& r, double&) { r = ArcCosBySteps(a); });
    expectSame([&](double& r, double&) { r = trigonometry.ArcTan2(a, b); },
               [&](double& r, double&) { r = ArcTan2BySteps(a, b); });
    expectSame([&](double& r, double&) { r = trigonometry.Degrees(a); },
               [&](double& r, double&) { r = CheckedProduct(a, 360.0 / kP); });
    expectSame([&](double& r, double&) { r = trigonometry.Radians(a); },
               [&](double& r, double&) { r = CheckedProduct(a, kP / 360.0); });
    expectSame([&](double& x, double& y) { trigonometry.PolarToXY(a, b, x, y); },
               [&](double& x, double& y) {
                 x = CheckedProduct(Cosine(a), b);
                 y = CheckedProduct(Sine(a), b);
               });
    expectSame([&](double& angle, double& radius) { trigonometry.XYToPolar(a, b, angle, radius); },
               [&](double& angle, double& radius) {
                 angle = ArcTan2BySteps(a, b);
                 radius = std::sqrt(CheckedSum(CheckedProduct(a, a), CheckedProduct(b, b)));
               });
  }
  EXPECT_GT(faults, 1000);
}

TEST_F(CTrigonometryTest, AnglesOfNegativeZerosHaveTheSignsOfTheirSteps) {
  const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
  EXPECT_EQ(bits(trigonometry.ArcSin(-0.0)), bits(-0.0));
  EXPECT_EQ(bits(trigonometry.ArcTan2(-0.0, -0.0)), bits(0.0));
  EXPECT_EQ(bits(trigonometry.ArcTan2(-2, 0)), bits(-0.0));
  EXPECT_EQ(bits(trigonometry.ArcTan2(-2, -0.0)), bits(0.0));
  EXPECT_EQ(bits(trigonometry.ArcTan2(2, -0.0)), bits(-0.0));
}

TEST_F(CTrigonometryTest, SelfTestPasses) {
  EXPECT_EQ(SelfTest(trigonometry), FailedTests{});
}

}  // namespace
}  // namespace vorquill21
