#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "vorquill21/frame/types/bounded_array.hpp"

namespace vorquill21 {

/// Halves the interval from the first to the last node until its ends are neighbours, going up where
/// (x >= node) equals `ascending`; returns the lower end.
///
/// All searches in one table take the same number of steps, without a jump that depends on a node: once the
/// ends are neighbours, a further step meets the lower end again and changes nothing. A step takes no longer
/// than a jump back, so that four of them are made before one.
template <bool ascending>
std::size_t Bisect(std::span<const double> nodes, double x) {
  std::size_t low = 0;
  std::size_t high = nodes.size() - 1;
#pragma GCC unroll 4
  for (auto steps = std::bit_width(high); steps > 0; --steps) {
    const std::size_t middle = (low + high) / 2;
    const bool goesUp = (x >= nodes[middle]) == ascending;
    const std::size_t lowAfter = goesUp ? middle : low;
    high = goesUp ? high : middle;
    low = lowAfter;
  }
  return low;
}

/// Whether bounds are those of two nodes at least, from 0 or more on, whose sums stay within 32 bits. Other
/// tables are searched by their indices, with the errors that these raise.
constexpr bool AllowBisection(Bounds bounds) {
  const auto lower = static_cast<std::uint32_t>(bounds.lower);  // a negative one is beyond every upper bound
  const auto upper = static_cast<std::uint32_t>(bounds.upper);
  return lower < upper && upper <= std::numeric_limits<std::int32_t>::max() / 2;
}

constexpr bool IsAscendingAround(std::span<const double> nodes, double x) {
  return nodes.front() <= x && x <= nodes.back();
}

constexpr bool IsDescendingAround(std::span<const double> nodes, double x) {
  return nodes.back() <= x && x <= nodes.front();
}

/// The interval in which the search ends, counted from 0. What lies in the first one of an ascending table
/// counts as there, its end included.
inline std::size_t FindInterval(std::span<const double> nodes, double x, bool ascending) {
  if (!ascending) return Bisect<false>(nodes, x);
  const bool isBeyondFirst = !(x <= nodes[1]);
  return Bisect<true>(nodes, x) & -static_cast<std::size_t>(isBeyondFirst);
}

}  // namespace vorquill21
