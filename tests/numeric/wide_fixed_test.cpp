#include "vorquill21/numeric/wide_fixed.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace vorquill21 {
namespace {

constexpr std::uint64_t kAll = ~std::uint64_t{0};
constexpr std::uint64_t kTop = std::uint64_t{1} << 63;
constexpr WideFixed kOne{{0, 0, 0, 1}};
constexpr WideFixed kLeastFraction{{1, 0, 0, 0}};
constexpr double kLeast = std::numeric_limits<double>::denorm_min();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void ExpectProduct(std::uint64_t left, std::uint64_t right, std::uint64_t high, std::uint64_t low) {
  for (const WideProduct& product : {Multiply(left, right), MultiplyByHalves(left, right)}) {
    EXPECT_EQ(product.high, high) << left << " * " << right;
    EXPECT_EQ(product.low, low) << left << " * " << right;
  }
}

TEST(WideFixedTest, WordsMultiplyToTwoWords) {
  ExpectProduct(0, kAll, 0, 0);
  ExpectProduct(1, kAll, 0, kAll);
  ExpectProduct(kAll, kAll, kAll - 1, 1);
  ExpectProduct(kTop, 2, 1, 0);
  ExpectProduct(0xFFFFFFFF, 0xFFFFFFFF, 0, 0xFFFFFFFE00000001);
  ExpectProduct(0x0123456789ABCDEF, 0xFEDCBA9876543210, 0x0121FA00AD77D742, 0x2236D88FE5618CF0);
}

TEST(WideFixedTest, HalvesMultiplyToWhatWordsDo) {
  std::mt19937_64 random(21);
  for (int i = 0; i < 100'000; ++i) {
    const std::uint64_t left = random() >> random() % 64;
    const std::uint64_t right = random() >> random() % 64;
    EXPECT_EQ(MultiplyByHalves(left, right).high, Multiply(left, right).high);
    EXPECT_EQ(MultiplyByHalves(left, right).low, left * right);
  }
}

TEST(WideFixedTest, CarriesAndBorrowsRunThroughAllWords) {
  constexpr WideFixed kBelowOne{{kAll, kAll, kAll, 0}};
  EXPECT_EQ(kBelowOne + kLeastFraction, kOne);
  EXPECT_EQ(kOne - kLeastFraction, kBelowOne);
  EXPECT_EQ(kOne - kOne, WideFixed{});
  EXPECT_LT(kBelowOne, kOne);
  EXPECT_GT(kBelowOne, kLeastFraction);
}

TEST(WideFixedTest, ProductsAreExactWhereThereIsRoom) {
  EXPECT_EQ(WideFrom(1.5) * WideFrom(2.25), WideFrom(3.375));
  EXPECT_EQ(WideFrom(0x1p-96) * WideFrom(0x1p-96), kLeastFraction);
  EXPECT_EQ(kOne * kLeastFraction, kLeastFraction);
  EXPECT_EQ(kOne * (WideFixed{{2, 0, 0, 0}}), (WideFixed{{2, 0, 0, 0}}));
}

TEST(WideFixedTest, InexactProductsEndInAnOddBit) {
  EXPECT_EQ(kLeastFraction * kLeastFraction, kLeastFraction);
  EXPECT_EQ(WideFrom(0x1p-96) * WideFrom(0x1.8p-96), kLeastFraction);
  EXPECT_EQ(WideFrom(0x1p-95) * WideFrom(0x1.4p-96), (WideFixed{{3, 0, 0, 0}}));
}

TEST(WideFixedTest, ShiftsCrossWords) {
  constexpr WideFixed kValue{{0x1111, 0x2222, 0x3333, 0x8000'0000'0000'4444}};
  EXPECT_EQ(ShiftedRight(kValue, 0), kValue);
  EXPECT_EQ(ShiftedRight(kValue, 64), (WideFixed{{0x2222, 0x3333, 0x8000'0000'0000'4444, 0}}));
  EXPECT_EQ(ShiftedRight(kValue, 68),
            (WideFixed{{0x3000'0000'0000'0222, 0x4000'0000'0000'0333, 0x0800'0000'0000'0444, 0}}));
  EXPECT_EQ(ShiftedRight(kValue, 255), kLeastFraction);
  EXPECT_EQ(ShiftedRight(kValue, 256), WideFixed{});
  EXPECT_EQ(ShiftedRight(kValue, 1000), WideFixed{});
}

TEST(WideFixedTest, DoublesHaveASignificandAndAnExponent) {
  for (const double value : {1.0, -1.5, kLeast, 3 * kLeast, 0x0.fffffffffffffp-1022, 0x1p-1022, kLargest}) {
    const DoubleParts parts = PartsOf(value);
    EXPECT_EQ(parts.significand >> 52, 1U) << value;
    EXPECT_EQ(std::ldexp(static_cast<double>(parts.significand), parts.exponent), std::abs(value));
  }
  EXPECT_EQ(PartsOf(-0.0).significand, 0U);
}

TEST(WideFixedTest, DoublesComeBackFromFixedPoint) {
  for (const double value : {0.0, 1.0, 0x1.fffffffffffffp+63, 0x1.23456789abcdep-100, 0x1p-192, 0.1, 1e19}) {
    EXPECT_EQ(NearestDouble(WideFrom(value)), value);
    EXPECT_EQ(NearestDouble(WideFrom(-value)), value);
  }
  EXPECT_EQ(WideFrom(0x1.8p-192), kLeastFraction);
  EXPECT_EQ(WideFrom(0x1p-193), WideFixed{});
}

struct Rounding {
  WideFixed value;
  std::int64_t exponent;
  double expected;
};

TEST(WideFixedTest, NearestDoubleRoundsHalvesToEven) {
  const Rounding cases[] = {
      {{{0, 0, 1U << 11, 1}}, 0, 0x1p+0},                            // the middle, to even below
      {{{0, 0, 3U << 11, 1}}, 0, 0x1.0000000000002p+0},              // the middle, to even above
      {{{1, 0, 1U << 11, 1}}, 0, 0x1.0000000000001p+0},              // just above the middle
      {{{kAll, kAll, (1U << 11) - 1, 1}}, 0, 0x1p+0},                // just below
      {{{0, 0, 0, kTop / 2 + 0x200}}, 0, 0x1p+62},                   // the middle within one word
      {{{0, 0, kTop, kTop / 2 + 0x200}}, 0, 0x1.0000000000001p+62},  // the first bit of the next tips it
      {{{0, 0, kAll, 1}}, 0, 0x1p+1},                                // a carry into the exponent
      {{{0, 0, 0, 1}}, 1024, kInfinity},                             // beyond the largest
      {{{0, 0, 0, 1}}, 1023, 0x1p+1023},
      {{{0, 0, kAll << 12, 1}}, 1023, kLargest},
      {{{kAll, kAll, (kAll << 11) - 1, 1}}, 1023, kLargest},  // just below the middle to what would follow
      {{{0, 0, kAll << 11, 1}}, 1023, kInfinity},             // the middle
      {{{0, 0, 0, 1}}, -1074, kLeast},                        // gradual
      {{{0, 0, 0, 1}}, -1075, 0.0},                           // half the least, to even
      {{{1, 0, 0, 1}}, -1075, kLeast},                        // more than half of it
      {{{0, 0, kTop, 1}}, -1074, 2 * kLeast},                 // one and a half, to even
      {{{0, 0, kAll, 0}}, -1022, 0x1p-1022},                  // up into the normal ones
      {{{0, 0, 0, 1}}, -1076, 0.0},                           // less than half
      {{{0, 0, 0, 1}}, -5'000'000'000, 0.0},                  // far below
      {{{0, 0, 0, 1}}, 5'000'000'000, kInfinity},             // far above
  };
  for (const Rounding& each : cases) {
    EXPECT_EQ(NearestDouble(each.value, each.exponent), each.expected) << each.exponent;
  }
}

}  // namespace
}  // namespace vorquill21
