#pragma once

#include <cstddef>
#include <span>

namespace vorquill21 {

/// Position of the value that remains when every later one that is strictly greater replaces the one before
/// it; `values` holds at least one. Not part of the interface.
std::size_t PositionOfMaximum(std::span<const double> values);

/// The same with strictly less.
std::size_t PositionOfMinimum(std::span<const double> values);

}  // namespace vorquill21
