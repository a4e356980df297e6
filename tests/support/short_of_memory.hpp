#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "tests/filestream/memory_shortage.hpp"
#include "tests/support/raised_number.hpp"

namespace vorquill21::test {

/// Calls in a shortage of memory that begins at each allocation in turn. `expected`, the number that the call
/// raises otherwise (0 for none), may only give way to error 7.
template <typename Call>
void ExpectNumberOrErrorSeven(std::int32_t expected, Call call) {
  for (const int count : {1, 1000}) {
    bool isHit = true;
    for (int first = 1; isHit; ++first) {
      std::int32_t number = 0;
      {
        const MemoryShortage shortage(first, count);
        number = RaisedNumber(call);
        isHit = MemoryShortage::Hit();
      }
      EXPECT_TRUE(number == expected || (isHit && number == kOutOfMemory)) << number;
    }
  }
}

}  // namespace vorquill21::test
