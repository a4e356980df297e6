#include "vorquill21/numeric/running_mean.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/numeric/fused_multiplication.hpp"

// The chain of dependent operations, M to M, limits the speed, and the division is the longest of them. It is
// done as a fused product with the reciprocal of k in two parts, 1 / k = high + low, good to 2^-105:
//
//   M / k = RN(M * high + M * low)
//
// The quotient of a 53-bit number and an integer below 2^31 lies at least 2^-85 of its size away from every
// midpoint of two doubles, so that the rounding errors of the small second term do not matter while they stay
// below that. The term is formed from both parts of M = share + rest beside the sum itself; its error is
// 2^-106 times |share / M|. A block in which that ratio is large, or M comes near the ends of the range or is
// 0, is done again by division.

namespace vorquill21 {
namespace {

double MeanByDivision(std::span<const double> values, double count, double mean) {
  for (const double x : values) {
    count += 1.0;
    mean /= count;
    mean = Checked(x / count + (count - 1.0) * mean, x, mean);
  }
  return mean;
}

}  // namespace

double RunningMeanByDivision(std::span<const double> values) {
  return MeanByDivision(values, 0.0, 0.0);
}

#ifdef VORQUILL21_WIDE_INSTRUCTIONS

namespace {

constexpr std::size_t kBlock = 512;
constexpr double kLeastMagnitude = 0x1p-900;
constexpr double kGreatestMagnitude = 0x1p+900;
constexpr double kGreatestRatio = 0x1p+15;

struct Block {
  std::array<double, kBlock> share;   // x / k
  std::array<double, kBlock> weight;  // k - 1
  std::array<double, kBlock> high;    // 1 / k in two parts
  std::array<double, kBlock> low;
};

__attribute__((target("avx2,fma"))) void Prepare(std::span<const double> values, double count, Block& block) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double k = count + static_cast<double>(static_cast<int>(i) + 1);
    const double reciprocal = 1.0 / k;
    block.share[i] = values[i] / k;
    block.weight[i] = k - 1.0;
    block.high[i] = reciprocal;
    block.low[i] = std::fma(-k, reciprocal, 1.0) * reciprocal;
  }
}

/// The mean after the values of `block`; false when the steps by division must be taken instead.
__attribute__((target("avx2,fma"))) bool AdvanceByReciprocals(const Block& block, std::size_t size,
                                                              double& mean) {
  double m = mean;
  double least = std::abs(m);
  double greatest = least;
  double greatestShare = 0.0;
  double smallTerm = m * block.low[0];
  for (std::size_t i = 0; i < size; ++i) {
    const double nextLow = i + 1 < kBlock ? block.low[i + 1] : 0.0;
    const double rest = block.weight[i] * std::fma(m, block.high[i], smallTerm);
    smallTerm = std::fma(rest, nextLow, block.share[i] * nextLow);
    m = block.share[i] + rest;
    least = std::min(least, std::abs(m));
    greatest = std::max(greatest, std::abs(m));
    greatestShare = std::max(greatestShare, std::abs(block.share[i]));
  }
  mean = m;
  return least > kLeastMagnitude && greatest < kGreatestMagnitude && greatestShare < kGreatestRatio * least;
}

double MeanByReciprocals(std::span<const double> values) {
  Block block{};
  double mean = values.empty() ? 0.0 : values.front() + 0.0;
  for (std::size_t done = std::min<std::size_t>(1, values.size()); done < values.size();) {
    const std::span<const double> next = values.subspan(done, std::min(kBlock, values.size() - done));
    const auto count = static_cast<double>(done);
    Prepare(next, count, block);
    const double before = mean;
    if (!AdvanceByReciprocals(block, next.size(), mean)) mean = MeanByDivision(next, count, before);
    done += next.size();
  }
  return mean;
}

}  // namespace

double RunningMean(std::span<const double> values) {
  return HasFusedMultiplication() ? MeanByReciprocals(values) : RunningMeanByDivision(values);
}

#else

double RunningMean(std::span<const double> values) {
  return RunningMeanByDivision(values);
}

#endif

}  // namespace vorquill21
