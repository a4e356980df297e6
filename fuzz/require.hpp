#pragma once

#include <bit>
#include <cstdint>
#include <cstdlib>

namespace vorquill21::test {

/// An input for which something does not hold is a find.
inline void Require(bool condition) {
  if (!condition) std::abort();
}

inline bool SameBits(double left, double right) {
  return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

}  // namespace vorquill21::test
