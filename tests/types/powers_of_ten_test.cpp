#include "vorquill21/frame/types/powers_of_ten.hpp"

#include <gtest/gtest.h>

#include <random>

#include "tests/types/big_integer.hpp"
#include "vorquill21/frame/types/wide_product.hpp"

namespace vorquill21 {
namespace {

using test::BigInteger;

BigInteger IntegerOf(const WideProduct& bits) {
  BigInteger integer(bits.high);
  integer.MultiplyByPower(2, 64) += BigInteger(bits.low);
  return integer;
}

TEST(PowersOfTenTest, EveryEntryIsTheLeadingBitsCutOff) {
  for (int exponent = kLeastPowerOfTen; exponent <= kGreatestPowerOfTen; ++exponent) {
    const WideProduct bits = LeadingBitsOfPowerOfTen(exponent);
    EXPECT_EQ(bits.high >> 63, 1u) << exponent;
    // bits * 2 ^ scale <= 10 ^ exponent < (bits + 1) * 2 ^ scale, with all negative powers on the other side.
    const int scale = FloorLog2OfPowerOfTen(exponent) - 127;
    BigInteger low = IntegerOf(bits);
    BigInteger high = low;
    high += BigInteger(1);
    BigInteger power(1);
    power.MultiplyByPower(10, exponent).MultiplyByPower(2, -scale);
    for (BigInteger* bound : {&low, &high}) bound->MultiplyByPower(2, scale).MultiplyByPower(10, -exponent);
    EXPECT_LE(low, power) << exponent;
    EXPECT_LT(power, high) << exponent;
  }
}

TEST(PowersOfTenTest, FloorOfLog2HoldsInItsWholeRange) {
  BigInteger power(1);
  BigInteger next(2);  // 2 ^ (log + 1)
  int log = 0;
  for (int exponent = 0; exponent <= 1200; ++exponent, power *= 10) {
    for (; next <= power; next *= 2) ++log;
    EXPECT_EQ(FloorLog2OfPowerOfTen(exponent), log) << exponent;
    // 10 ^ -exponent lies between two powers of two, as no other power of ten is one.
    EXPECT_EQ(FloorLog2OfPowerOfTen(-exponent), exponent == 0 ? 0 : -log - 1) << -exponent;
  }
}

TEST(PowersOfTenTest, FloorOfLog10HoldsInItsWholeRange) {
  BigInteger power(1);
  BigInteger next(10);  // 10 ^ (log + 1)
  int log = 0;
  for (int exponent = 0; exponent <= 2600; ++exponent, power *= 2) {
    for (; next <= power; next *= 10) ++log;
    EXPECT_EQ(FloorLog10OfPowerOfTwo(exponent), log) << exponent;
    EXPECT_EQ(FloorLog10OfPowerOfTwo(-exponent), exponent == 0 ? 0 : -log - 1) << -exponent;
  }
}

TEST(WideProductTest, HoldsAll128Bits) {
  constexpr std::uint64_t kMost = ~std::uint64_t{0};
  std::mt19937_64 random(1);
  std::vector<std::uint64_t> factors{0, 1, 2, 0xFFFFFFFF, 0x100000000, 0x8000000000000000, kMost};
  for (int i = 0; i < 60; ++i) factors.push_back(random() >> random() % 64);
  for (const std::uint64_t left : factors) {
    for (const std::uint64_t right : factors) {
      BigInteger expected(left);
      expected *= static_cast<std::uint32_t>(right >> 32);
      expected.MultiplyByPower(2, 32);
      BigInteger lower(left);
      lower *= static_cast<std::uint32_t>(right);
      expected += lower;
      EXPECT_EQ(IntegerOf(Multiply(left, right)).ToDecimal(), expected.ToDecimal()) << left << " " << right;
    }
  }
}

}  // namespace
}  // namespace vorquill21
