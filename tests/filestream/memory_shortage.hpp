#pragma once

#include <cstddef>

namespace vorquill21::test {

/// As long as it lives, the allocation number `first` (1 is the next one) of this thread and the `count` - 1
/// after it fail. One at a time.
class MemoryShortage {
 public:
  explicit MemoryShortage(int first, int count = 1);
  ~MemoryShortage();
  MemoryShortage(const MemoryShortage&) = delete;
  MemoryShortage& operator=(const MemoryShortage&) = delete;

  /// True once an allocation failed.
  static bool Hit();
};

/// Counts what this thread asks for as long as it lives. One at a time.
class MemoryUse {
 public:
  MemoryUse();
  ~MemoryUse();
  MemoryUse(const MemoryUse&) = delete;
  MemoryUse& operator=(const MemoryUse&) = delete;

  /// All bytes that were asked for, given back or not.
  static std::size_t AskedBytes();
};

}  // namespace vorquill21::test
