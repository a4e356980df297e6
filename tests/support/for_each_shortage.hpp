#pragma once

#include <gtest/gtest.h>

#include <initializer_list>

#include "tests/support/replaced_new.hpp"

namespace vorquill21::test {

/// Calls `attempt(shortage)` again and again, the 1st, the 2nd, ... allocation being the first one to fail,
/// until a run meets no shortage; so for each of `counts`, the number of allocations that fail in a row.
/// `attempt` arranges its own fresh state, calls the operation during the shortage, and checks what it
/// promises in both cases, asking `shortage.Hit()` afterwards. Returns the number of shortages that were met.
template <typename Attempt>
int ForEachShortage(Attempt attempt, std::initializer_list<int> counts = {1, 2, 3, 1000}) {
  int shortages = 0;
  for (const int count : counts) {
    bool isHit = true;
    for (int first = 1; isHit; ++first) {
      SCOPED_TRACE(testing::Message() << count << " allocations from " << first);
      MemoryShortage shortage(first, count);
      attempt(shortage);
      isHit = shortage.Hit();
      shortages += isHit ? 1 : 0;
    }
  }
  return shortages;
}

}  // namespace vorquill21::test
