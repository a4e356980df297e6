#pragma once

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace vorquill21::test {

struct TooLong : std::length_error {
  TooLong() : std::length_error("too long") {}
};

/// The exceptions by which the standard library says that there is no memory.
using MemoryFailures = testing::Types<std::bad_alloc, TooLong>;

}  // namespace vorquill21::test
