#include "vorquill21/numeric/extremes.hpp"

#include <algorithm>
#include <array>
#include <functional>

#include "vorquill21/numeric/error_free.hpp"

// One pass finds the last block that brought a new extreme; only in that one is its position looked for.

namespace vorquill21 {
namespace {

constexpr std::size_t kLanes = 32;
constexpr std::size_t kBlock = 32 * kLanes;

template <typename Precedes>
VORQUILL21_INLINED double ExtremeOf(std::span<const double> values, double candidate, Precedes precedes) {
  std::array<double, kLanes> lanes;
  lanes.fill(candidate);
  while (values.size() >= kLanes) {
    for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = precedes(values[i], lanes[i]) ? values[i] : lanes[i];
    values = values.subspan(kLanes);
  }
  for (const double value : values) candidate = precedes(value, candidate) ? value : candidate;
  for (const double value : lanes) candidate = precedes(value, candidate) ? value : candidate;
  return candidate;
}

template <typename Precedes>
VORQUILL21_INLINED std::size_t PositionOfExtreme(std::span<const double> values, Precedes precedes) {
  double candidate = values.front();
  std::size_t blockOfCandidate = 0;
  for (std::size_t begin = 0; begin < values.size(); begin += kBlock) {
    const std::size_t size = std::min(kBlock, values.size() - begin);
    const double extreme = ExtremeOf(values.subspan(begin, size), candidate, precedes);
    if (!precedes(extreme, candidate)) continue;
    candidate = extreme;
    blockOfCandidate = begin;
  }
  std::size_t position = blockOfCandidate;
  while (position < values.size() && values[position] != candidate) ++position;
  return position < values.size() ? position : 0;  // a NaN that comes first equals nothing and stays
}

#ifdef VORQUILL21_WIDE_INSTRUCTIONS

__attribute__((target("avx2"))) std::size_t PositionOfMaximumWide(std::span<const double> values) {
  return PositionOfExtreme(values, std::greater<>());
}

__attribute__((target("avx2"))) std::size_t PositionOfMinimumWide(std::span<const double> values) {
  return PositionOfExtreme(values, std::less<>());
}

#endif

}  // namespace

std::size_t PositionOfMaximum(std::span<const double> values) {
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  if (__builtin_cpu_supports("avx2")) return PositionOfMaximumWide(values);
#endif
  return PositionOfExtreme(values, std::greater<>());
}

std::size_t PositionOfMinimum(std::span<const double> values) {
#ifdef VORQUILL21_WIDE_INSTRUCTIONS
  if (__builtin_cpu_supports("avx2")) return PositionOfMinimumWide(values);
#endif
  return PositionOfExtreme(values, std::less<>());
}

}  // namespace vorquill21
