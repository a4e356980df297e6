#pragma once

#include <cstddef>
#include <cstdint>

#include "tests/support/raised_number.hpp"

// What the target vorquill21_replaced_new does to the programs that it is linked to: all that they allocate
// with new is counted, and fails when a test wants it.

namespace vorquill21::test {

/// All bytes that this thread ever asked for, given back or not.
std::size_t AskedBytes() noexcept;

/// How many bytes `operation` asks for, given back or not.
template <typename Operation>
std::size_t BytesAskedBy(Operation operation) {
  const std::size_t before = AskedBytes();
  operation();
  return AskedBytes() - before;
}

/// Lets the allocation number `first` (1 is the next one) of a call and the `count` - 1 after it fail.
class MemoryShortage {
 public:
  explicit MemoryShortage(int first, int count = 1) : allocationsBefore_(first - 1), failures_(count) {}

  /// What `call` returns, memory being short meanwhile for this thread. One call at a time.
  template <typename Call>
  auto During(Call call) {
    const Beginning beginning(*this);
    return call();
  }

  /// The number of the LibraryError that `call` raises meanwhile; 0 when it raises none.
  template <typename Call>
  std::int32_t RaisedDuring(Call call) {
    return During([&] { return RaisedNumber(call); });
  }

  /// True once an allocation failed.
  bool Hit() const noexcept { return isHit_; }

  /// Counts one allocation; true when it is to fail.
  bool NextAllocationFails() noexcept;

 private:
  /// Memory is short from here on, until destroyed.
  class Beginning {
   public:
    explicit Beginning(MemoryShortage& shortage) noexcept;
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;
    ~Beginning();
  };

  int allocationsBefore_;
  int failures_;
  bool isHit_ = false;
};

}  // namespace vorquill21::test
