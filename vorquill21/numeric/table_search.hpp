#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <span>

#include "vorquill21/frame/types/bounded_array.hpp"

namespace vorquill21 {

/// Halves the interval from the first to the last node until its ends are neighbours, going up where
/// (x >= node) equals `ascending`; returns the lower end.
///
/// All searches in one table take the same number of steps, without a jump that depends on a node: once the
/// ends are neighbours, a further step meets the lower end again and changes nothing.
template <bool ascending>
std::int32_t Bisect(std::span<const double> nodes, double x) {
  std::uint32_t low = 0;
  auto high = static_cast<std::uint32_t>(nodes.size() - 1);
  for (auto steps = std::bit_width(high); steps > 0; --steps) {
    const std::uint32_t middle = (low + high) / 2;
    const bool goesUp = (x >= nodes[middle]) == ascending;
    const std::uint32_t lowAfter = goesUp ? middle : low;
    high = goesUp ? high : middle;
    low = lowAfter;
  }
  return static_cast<std::int32_t>(low);
}

/// Whether bounds are those of two nodes at least, from 0 or more on, whose sums stay within 32 bits. Other
/// tables are searched by their indices, with the errors that these raise.
constexpr bool AllowBisection(Bounds bounds) {
  return bounds.lower >= 0 && bounds.lower < bounds.upper &&
         bounds.upper <= std::numeric_limits<std::int32_t>::max() / 2;
}

constexpr bool IsAscendingAround(std::span<const double> nodes, double x) {
  return nodes.front() <= x && x <= nodes.back();
}

constexpr bool IsDescendingAround(std::span<const double> nodes, double x) {
  return nodes.back() <= x && x <= nodes.front();
}

/// The interval in which the search ends, counted from 0. What lies in the first one of an ascending table
/// counts as there, its end included.
inline std::int32_t FindInterval(std::span<const double> nodes, double x, bool ascending) {
  if (!ascending) return Bisect<false>(nodes, x);
  const std::int32_t low = Bisect<true>(nodes, x);
  return x <= nodes[1] ? 0 : low;
}

}  // namespace vorquill21
