#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/interpolate/curve_fit.hpp"
#include "vorquill21/numeric/double_double.hpp"
#include "vorquill21/numeric/elementary.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kPowers = 4;  // that are worked on side by side

struct PowerBlock {
  double high[kPowers];
  double low[kPowers];
};

/// 0 when `high` is the double nearest to every number within |high| * multiplications * 2^-102 of high +
/// low, which is as far off as so many products of double-doubles may be; something else when it may not be.
/// It is the double nearest to high + low.
VORQUILL21_INLINED std::uint64_t RoundingDoubt(double high, double low, double multiplications) {
  const double other = high + low * (1.0 + multiplications * 0x1p-48);
  return std::bit_cast<std::uint64_t>(other) ^ std::bit_cast<std::uint64_t>(high);
}

/// x, x^2, x^3, x^4.
template <bool fused>
VORQUILL21_INLINED PowerBlock FirstPowers(double x) {
  const ErrorFree product = TwoProduct<fused>(x, x);
  const DoubleDouble square{product.value, product.error};
  const DoubleDouble third = Product<fused>(square, x);
  const DoubleDouble fourth = Product<fused>(square, square);
  return {{x, square.high, third.high, fourth.high}, {0.0, square.low, third.low, fourth.low}};
}

template <bool fused>
VORQUILL21_INLINED void Multiply(PowerBlock& powers, DoubleDouble factor) {
  for (std::size_t i = 0; i < kPowers; ++i) {
    const DoubleDouble product = Product<fused>(DoubleDouble{powers.high[i], powers.low[i]}, factor);
    powers.high[i] = product.high;
    powers.low[i] = product.low;
  }
}

/// The sum of the terms when every power is far from the limits of doubles; `isSure` says whether every power
/// was rounded to the right side.
template <bool fused>
VORQUILL21_INLINED double SumInRange(double x, std::span<const double> coefficients, bool& isSure) {
  const auto multiplications = static_cast<double>(coefficients.size());
  std::uint64_t doubt = 0;
  double sum = 0.0 + coefficients[0];
  PowerBlock powers = FirstPowers<fused>(x);
  const DoubleDouble fourth{powers.high[kPowers - 1], powers.low[kPowers - 1]};
  auto rest = coefficients.subspan(1);
  while (true) {
    for (std::size_t i = 0; i < kPowers; ++i) {
      doubt |= RoundingDoubt(powers.high[i], powers.low[i], multiplications);
    }
    if (rest.size() < kPowers) break;
    for (std::size_t i = 0; i < kPowers; ++i) sum += rest[i] * powers.high[i];
    rest = rest.subspan(kPowers);
    if (rest.empty()) break;
    Multiply<fused>(powers, fourth);
  }
  for (std::size_t i = 0; i < rest.size(); ++i) sum += rest[i] * powers.high[i];
  isSure = doubt == 0;
  return sum;
}

#ifdef VORQUILL21_WIDE_INSTRUCTIONS
[[gnu::target("avx2,fma")]] double SumInRangeFused(double x, std::span<const double> coefficients,
                                                   bool& isSure) {
  return SumInRange<true>(x, coefficients, isSure);
}
#endif

/// Whether x^0 to x^count, and the errors of their products, are normal numbers.
bool AreInRange(double x, std::size_t count) {
  constexpr std::uint64_t kLimit = 900;
  constexpr int kBias = 1023;
  const int biased = static_cast<int>(std::bit_cast<std::uint64_t>(x) >> 52 & 0x7FF);
  const auto size =
      static_cast<std::uint64_t>(std::max(biased - kBias + 1, kBias - biased));  // >= |log2 |x||
  return size * count < kLimit;
}

/// The sum of the terms, and the first fault in it.
[[gnu::cold, gnu::noinline]] double CheckedSum(double x, std::span<const double> coefficients) {
  double sum = 0.0;
  std::uint32_t exponent = 0;
  for (const double coefficient : coefficients) {
    const double power = Checked(IntegerPower(x, exponent++), x);
    const double term = Checked(coefficient * power, coefficient, power);
    sum = Checked(sum + term, sum, term);
  }
  return sum;
}

std::span<const double> WithoutZerosAtEnd(std::span<const double> coefficients) {
  while (!coefficients.empty() && coefficients.back() == 0.0)
    coefficients = coefficients.first(coefficients.size() - 1);
  return coefficients;
}

/// The sum of the terms, of which there is at least one.
double SumOf(double x, std::span<const double> coefficients, [[maybe_unused]] bool fused) {
  if (AreInRange(x, coefficients.size() + kPowers)) {
    bool isSure = false;
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
    const double sum =
        fused ? SumInRangeFused(x, coefficients, isSure) : SumInRange<false>(x, coefficients, isSure);
#else
    const double sum = SumInRange<false>(x, coefficients, isSure);
#endif
    if (isSure && std::isfinite(sum)) return sum;
  }
  return CheckedSum(x, coefficients);
}

/// Whether base^exponent, the base being finite, exceeds the largest double.
bool Overflows(double base, std::int32_t exponent) {
  constexpr std::int64_t kGreatestExponent = 1023;
  if (std::abs(base) <= 1.0) return false;
  if ((std::int64_t{std::ilogb(base)} + 1) * exponent <= kGreatestExponent) return false;
  return std::isinf(IntegerPower(base, static_cast<std::uint32_t>(exponent)));
}

}  // namespace

double EvaluateCurve(double arX, ArrayView<const double> arCoeffs, bool fused) {
  const std::int32_t upper = arCoeffs.UpperBound();
  if (upper < 1) return 0.0;
  const std::int64_t ignored = 1 - std::int64_t{arCoeffs.LowerBound()};
  if (ignored < 0) Raise(kSubscriptOutOfRange);
  const auto all = arCoeffs.Elements().subspan(static_cast<std::size_t>(ignored));
  if (!std::isfinite(arX)) return CheckedSum(arX, all);
  const auto used = WithoutZerosAtEnd(all);
  const double sum = used.empty() ? 0.0 : SumOf(arX, used, fused);
  if (used.size() < all.size() && Overflows(arX, upper - 1)) Raise(kOverflow);
  return sum;
}

}  // namespace vorquill21
