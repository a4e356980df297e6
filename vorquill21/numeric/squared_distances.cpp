#include "vorquill21/numeric/squared_distances.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "vorquill21/frame/types/checked.hpp"

// While a sum of terms >= 0 stays in one binade, [2^e, 2^(e+1)), its unit in the last place u does not
// change, and adding a term adds the term rounded to a multiple of u, unless the term lies just between two
// of them. Multiples of u add up without rounding, in any order, and so in lanes. A block that leaves the
// binade, or holds a term just between, is added in order.

namespace vorquill21 {
namespace {

double AddInOrder(std::span<const double> values, double from, double sum) {
  for (const double x : values) {
    const double distance = from - x;
    sum += distance * distance;
  }
  return sum;
}

/// Goes the steps again to raise the fault that made their sum infinite.
double AddChecked(std::span<const double> values, double from) {
  double sum = 0.0;
  for (const double x : values) {
    const double distance = Checked(from - x, from, x);
    const double square = Checked(distance * distance, distance);
    sum = Checked(sum + square, sum, square);
  }
  return sum;
}

}  // namespace

double SumOfSquaredDistancesInOrder(std::span<const double> values, double from) {
  const double sum = AddInOrder(values, from, 0.0);
  return std::isfinite(sum) ? sum : AddChecked(values, from);
}

#ifdef VORQUILL21_WIDE_INSTRUCTIONS

namespace {

using FourDoubles [[gnu::vector_size(32)]] = double;
using FourIntegers [[gnu::vector_size(32)]] = std::int64_t;

constexpr std::size_t kVectors = 4;  // as many sums at a time hide the latency of additions
constexpr std::size_t kLanes = 4 * kVectors;
constexpr std::size_t kBlock = 16 * kLanes;
constexpr std::uint64_t kExponentBits = 0x7FF0'0000'0000'0000;
constexpr double kLeastSum = 0x1p-900;
constexpr double kGreatestSum = 0x1p+1000;

/// Adds a block of values to `sum` when it can be done in lanes.
__attribute__((target("avx2"))) bool AddInLanes(std::span<const double, kBlock> values, double from,
                                                double& sum) {
  if (!(sum >= kLeastSum && sum <= kGreatestSum)) return false;
  constexpr FourIntegers kMagnitude = ~FourIntegers{} & std::numeric_limits<std::int64_t>::max();
  const double binade = std::bit_cast<double>(std::bit_cast<std::uint64_t>(sum) & kExponentBits);
  FourDoubles sums[kVectors] = {};
  FourDoubles remainders[kVectors] = {};
  for (std::size_t i = 0; i < kBlock; i += kLanes) {
    for (std::size_t v = 0; v < kVectors; ++v) {
      FourDoubles x;
      std::memcpy(&x, &values[i + 4 * v], sizeof x);
      const FourDoubles distance = from - x;
      const FourDoubles term = distance * distance;
      const FourDoubles rounded = (binade + term) - binade;
      const FourDoubles remainder =
          reinterpret_cast<FourDoubles>(reinterpret_cast<FourIntegers>(term - rounded) & kMagnitude);
      sums[v] += rounded;
      remainders[v] = remainder > remainders[v] ? remainder : remainders[v];
    }
  }
  double added = 0.0;
  double remainder = 0.0;
  for (std::size_t lane = 0; lane < kLanes; ++lane) {
    added += sums[lane / 4][lane % 4];
    remainder = std::max(remainder, remainders[lane / 4][lane % 4]);
  }
  constexpr double kHalfUnit = 0x1p-53;
  if (!(sum + added < 2.0 * binade) || remainder >= kHalfUnit * binade) return false;
  sum += added;
  return true;
}

double SumInLanes(std::span<const double> values, double from) {
  double sum = 0.0;
  for (; values.size() >= kBlock; values = values.subspan(kBlock)) {
    const std::span<const double, kBlock> block = values.first<kBlock>();
    if (!AddInLanes(block, from, sum)) sum = AddInOrder(block, from, sum);
  }
  return AddInOrder(values, from, sum);
}

}  // namespace

double SumOfSquaredDistances(std::span<const double> values, double from) {
  if (!__builtin_cpu_supports("avx2")) return SumOfSquaredDistancesInOrder(values, from);
  const double sum = SumInLanes(values, from);
  return std::isfinite(sum) ? sum : AddChecked(values, from);
}

#else

double SumOfSquaredDistances(std::span<const double> values, double from) {
  return SumOfSquaredDistancesInOrder(values, from);
}

#endif

}  // namespace vorquill21
