#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "tests/support/for_each_shortage.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::test {

/// Calls in a shortage of memory that begins at each allocation in turn. `expected`, the number that the call
/// raises otherwise (0 for none), may only give way to error 7.
template <typename Call>
void ExpectNumberOrErrorSeven(std::int32_t expected, Call call) {
  ForEachShortage([&](MemoryShortage& shortage) {
    const std::int32_t number = shortage.RaisedDuring(call);
    EXPECT_TRUE(number == expected || (shortage.Hit() && number == kOutOfMemory)) << number;
  });
}

}  // namespace vorquill21::test
