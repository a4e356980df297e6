#pragma once

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

}  // namespace vorquill21::test
