#include "vorquill21/numeric/double_double.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/support/ulps.hpp"
#include "vorquill21/numeric/fused_multiplication.hpp"

namespace vorquill21::test {
namespace {

constexpr double kThird = 1.0 / 3.0;

[[maybe_unused]] bool SameBits(DoubleDouble left, DoubleDouble right) {
  return test::SameBits(left.high, right.high) && test::SameBits(left.low, right.low);
}

/// A number with random bits in both halves.
DoubleDouble RandomNumber(std::mt19937_64& random) {
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  const double high = std::ldexp(uniform(random), static_cast<int>(random() % 40));
  return Normalised(high, high * uniform(random) * 0x1p-53);
}

/// Expects |left - right| <= |scale| * 2^-100, the difference being taken in double-doubles.
void ExpectClose(DoubleDouble left, DoubleDouble right, double scale) {
  EXPECT_LE(std::abs((left - right).high), std::abs(scale) * 0x1p-100);
}

TEST(DoubleDoubleTest, SumKeepsWhatADoubleLoses) {
  const DoubleDouble sum = DoubleDouble{1.0, 0.0} + DoubleDouble{0x1p-80, 0.0};
  EXPECT_EQ(sum.high, 1.0);
  EXPECT_EQ(sum.low, 0x1p-80);
  const DoubleDouble rest = sum - DoubleDouble{1.0, 0.0};
  EXPECT_EQ(rest.high, 0x1p-80);
  EXPECT_EQ(rest.low, 0.0);
}

TEST(DoubleDoubleTest, DifferenceIsPreciseWhereNearlyEverythingCancels) {
  const DoubleDouble mean{kThird, 0x1.5555555555555p-56};
  const DoubleDouble rest = Difference(kThird, mean);
  EXPECT_EQ(rest.high, -0x1.5555555555555p-56);
  EXPECT_EQ(rest.low, 0.0);
}

TEST(DoubleDoubleTest, ProductOfDoublesIsExact) {
  const DoubleDouble square = Product<false>(DoubleDouble{1.0 + 0x1p-52, 0.0}, 1.0 + 0x1p-52);
  EXPECT_EQ(square.high, 1.0 + 0x1p-51);
  EXPECT_EQ(square.low, 0x1p-104);
}

TEST(DoubleDoubleTest, QuotientOfOneAndThreeHas32Digits) {
  const DoubleDouble third = Quotient<false>({1.0, 0.0}, {3.0, 0.0});
  EXPECT_EQ(third.high, 0x1.5555555555555p-2);
  EXPECT_EQ(third.low, 0x1.5555555555555p-56);
}

TEST(DoubleDoubleTest, RootOfTwoHas32Digits) {
  const DoubleDouble root = SquareRoot<false>({2.0, 0.0});
  EXPECT_EQ(root.high, 0x1.6a09e667f3bcdp+0);
  ExpectClose(root, {0x1.6a09e667f3bcdp+0, -0x1.bdd3413b26456p-54}, 1.0);
  EXPECT_EQ(SquareRoot<false>({}).high, 0.0);
}

TEST(DoubleDoubleTest, OperationsUndoEachOther) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 10000; ++i) {
    const DoubleDouble left = RandomNumber(random);
    const DoubleDouble right = RandomNumber(random);
    const double scale = std::abs(left.high) + std::abs(right.high);
    ExpectClose(left + right - right, left, scale);
    ExpectClose(QuickSum(left, right) - right, left, scale);
    ExpectClose(Quotient<false>(Product<false>(left, right), right), left, left.high);
    const DoubleDouble size = left.high < 0.0 ? -left : left;
    const DoubleDouble root = SquareRoot<false>(size);
    ExpectClose(Product<false>(root, root), size, size.high);
  }
}

TEST(DoubleDoubleTest, HighIsTheDoubleNearestToTheNumber) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 10000; ++i) {
    const DoubleDouble left = RandomNumber(random);
    const DoubleDouble right = RandomNumber(random);
    for (const DoubleDouble result : {left + right, QuickSum(left, right), Product<false>(left, right),
                                      Quotient<false>(left, right), Difference(left.high, right)}) {
      EXPECT_EQ(result.high + result.low, result.high);
    }
  }
}

#ifdef VORQUILL21_WIDE_INSTRUCTIONS
[[gnu::target("avx2,fma")]] void FusedResults(DoubleDouble left, DoubleDouble right,
                                              DoubleDouble (&results)[4]) {
  results[0] = Product<true>(left, right);
  results[1] = Product<true>(left, right.high);
  results[2] = Quotient<true>(left, right);
  results[3] = SquareRoot<true>({std::abs(left.high), 0.0});
}

TEST(DoubleDoubleTest, FusedMultiplicationDoesNotChangeABit) {
  if (!HasFusedMultiplication()) GTEST_SKIP() << "the processor or this build has no fused multiplication";
  std::mt19937_64 random(3);
  for (int i = 0; i < 10000; ++i) {
    const DoubleDouble left = RandomNumber(random);
    const DoubleDouble right = RandomNumber(random);
    DoubleDouble results[4];
    FusedResults(left, right, results);
    EXPECT_TRUE(SameBits(results[0], Product<false>(left, right)));
    EXPECT_TRUE(SameBits(results[1], Product<false>(left, right.high)));
    EXPECT_TRUE(SameBits(results[2], Quotient<false>(left, right)));
    EXPECT_TRUE(SameBits(results[3], SquareRoot<false>({std::abs(left.high), 0.0})));
  }
}
#endif

TEST(DoubleDoubleTest, ResultsAreRoundedOnceAlsoWhereTheyAreSubnormal) {
  constexpr double kLeast = std::numeric_limits<double>::denorm_min();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNearlyOne = 1.0 - 0x1p-53;
  struct Row {
    DoubleDouble value;
    int exponent;
    double rounded;
  };
  const Row rows[] = {
      {{1.5, 0x1p-60}, 3, 12.0},
      {{1.0, 0.0}, -1074, kLeast},
      {{1.0, 0.0}, -1075, 0.0},               // a half goes to the even one
      {{1.0, -0x1p-80}, -1075, 0.0},          // a little less than a half
      {{-1.0, 0x1p-80}, -1075, -0.0},         //
      {{1.0, 0x1p-80}, -1075, kLeast},        // a little more than a half
      {{-1.0, -0x1p-80}, -1075, -kLeast},     //
      {{3.0, 0.0}, -1075, 2 * kLeast},        // one and a half
      {{3.0, -0x1p-80}, -1075, kLeast},       // a little less
      {{-3.0, 0x1p-80}, -1075, -kLeast},      //
      {{kNearlyOne, 0.0}, -1022, 0x1p-1022},  // half-way to the least normal number, which is even
      {{kNearlyOne, -0x1p-80}, -1022, 0x1.ffffffffffffep-1023},
      {{1.0, 0x1p-60}, -1022, 0x1p-1022},
      {{1.0, 0.0}, 1024, kInfinity},
      {{}, -5000, 0.0},
  };
  for (const Row& row : rows) {
    EXPECT_TRUE(test::SameBits(RoundedTimesPowerOfTwo(row.value, row.exponent), row.rounded))
        << row.value.high << " + " << row.value.low << ", " << row.exponent;
  }
}

}  // namespace
}  // namespace vorquill21::test
