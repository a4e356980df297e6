#include "vorquill21/frame/types/checked.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

TEST(CheckedTest, FiniteResultsPass) {
  EXPECT_EQ(Checked(3.0, 1.0, 2.0), 3.0);
  EXPECT_EQ(Checked(3.0), 3.0);
  EXPECT_EQ(Checked(0.0, kInfinity), 0.0);
  EXPECT_TRUE(std::signbit(Checked(-0.0, 1.0)));
}

TEST(CheckedTest, InfinityOfFiniteOperandsIsAnOverflow) {
  EXPECT_EQ(RaisedNumber([] { Checked(kInfinity, kLargest, kLargest); }), kOverflow);
  EXPECT_EQ(RaisedNumber([] { Checked(-kInfinity, -kLargest, kLargest, 1.0); }), kOverflow);
}

TEST(CheckedTest, NanOfFiniteOperandsIsAnInvalidOperation) {
  EXPECT_EQ(RaisedNumber([] { Checked(kNan, -1.0); }), kInvalidProcedureCall);
}

TEST(CheckedTest, OperandsThatAreNotFinitePassThrough) {
  EXPECT_EQ(Checked(kInfinity, kInfinity, 1.0), kInfinity);
  EXPECT_TRUE(std::isnan(Checked(kNan, 1.0, kNan)));
  EXPECT_TRUE(std::isnan(Checked(kNan, kInfinity, kInfinity)));
}

TEST(CheckedTest, QuotientsAreDividedOnce) {
  EXPECT_EQ(CheckedQuotient(1.0, 3.0), 1.0 / 3.0);
  EXPECT_EQ(CheckedQuotient(0.0, -3.0), 0.0);
  EXPECT_EQ(CheckedQuotient(1.0, kInfinity), 0.0);
}

TEST(CheckedTest, AZeroDivisorIsADivisionByZeroWhateverTheDividend) {
  for (const double dividend : {0.0, -0.0, 1.0, -kLargest}) {
    for (const double zero : {0.0, -0.0}) {
      EXPECT_EQ(RaisedNumber([=] { CheckedQuotient(dividend, zero); }), kDivisionByZero) << dividend;
    }
  }
}

TEST(CheckedTest, QuotientsBeyondTheLargestDoubleOverflow) {
  EXPECT_EQ(RaisedNumber([] { CheckedQuotient(kLargest, 0.5); }), kOverflow);
}

TEST(CheckedTest, QuotientsOfOperandsThatAreNotFinitePassThrough) {
  EXPECT_EQ(CheckedQuotient(kInfinity, 2.0), kInfinity);
  EXPECT_EQ(CheckedQuotient(kInfinity, 0.0), kInfinity);
  EXPECT_TRUE(std::isnan(CheckedQuotient(kNan, 0.0)));
  EXPECT_TRUE(std::isnan(CheckedQuotient(kInfinity, kInfinity)));
}

TEST(CheckedTest, IntegersWithin32BitsPass) {
  for (const std::int64_t value : {std::int64_t{-2147483648}, std::int64_t{0}, std::int64_t{2147483647}}) {
    EXPECT_EQ(CheckedInt32(value), value);
  }
  for (const std::int64_t value :
       {std::int64_t{-2147483649}, std::int64_t{2147483648}, INT64_MIN, INT64_MAX}) {
    EXPECT_EQ(RaisedNumber([=] { CheckedInt32(value); }), kOverflow) << value;
  }
}

TEST(CheckedTest, RoundsToTheNearestIntegerAHalfToEven) {
  const struct {
    double value;
    std::int32_t rounded;
  } kCases[] = {{0.5, 0},
                {1.5, 2},
                {2.5, 2},
                {-0.5, 0},
                {-1.5, -2},
                {-2.5, -2},
                {0.49, 0},
                {0.51, 1},
                {-3.7, -4},
                {0.0, 0},
                {1e-300, 0},
                {2147483647.49, 2147483647},
                {-2147483648.5, -2147483647 - 1},
                {0.49999999999999994, 0},
                {1048576.5, 1048576}};
  for (const auto& [value, rounded] : kCases) EXPECT_EQ(RoundedInt32(value), rounded) << value;
}

TEST(CheckedTest, RoundingBeyond32BitsOverflows) {
  for (const double value :
       {2147483647.5, 2147483648.0, -2147483648.51, 1e300, -1e300, kInfinity, -kInfinity, kNan}) {
    EXPECT_EQ(RaisedNumber([=] { RoundedInt32(value); }), kOverflow) << value;
  }
}

}  // namespace
}  // namespace vorquill21
