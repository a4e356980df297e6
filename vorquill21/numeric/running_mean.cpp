#include "vorquill21/numeric/running_mean.hpp"

#include <algorithm>
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

/// The mean after further values; false when the steps by division must be taken instead.
__attribute__((target("avx2,fma"))) bool AdvanceByReciprocals(std::span<const double> values, double count,
                                                              double& mean) {
  double m = mean;
  double share = 0.0;
  double rest = m;
  double least = std::abs(m);
  double greatest = least;
  double greatestShare = 0.0;
  for (const double x : values) {
    count += 1.0;
    const double high = 1.0 / count;
    const double low = std::fma(-count, high, 1.0) * high;
    const double smallTerm = std::fma(rest, low, share * low);
    share = x / count;
    rest = (count - 1.0) * std::fma(m, high, smallTerm);
    m = share + rest;
    least = std::min(least, std::abs(m));
    greatest = std::max(greatest, std::abs(m));
    greatestShare = std::max(greatestShare, std::abs(share));
  }
  mean = m;
  return least > kLeastMagnitude && greatest < kGreatestMagnitude && greatestShare < kGreatestRatio * least;
}

double MeanByReciprocals(std::span<const double> values) {
  double mean = values.empty() ? 0.0 : values.front() + 0.0;
  for (std::size_t done = std::min<std::size_t>(1, values.size()); done < values.size();) {
    const std::span<const double> next = values.subspan(done, std::min(kBlock, values.size() - done));
    const auto count = static_cast<double>(done);
    const double before = mean;
    if (!AdvanceByReciprocals(next, count, mean)) mean = MeanByDivision(next, count, before);
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
