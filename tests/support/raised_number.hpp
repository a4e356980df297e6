#pragma once

#include <cstdint>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::test {

/// The number of the LibraryError that `operation` raises; 0 when it raises none.
template <typename Operation>
std::int32_t RaisedNumber(Operation operation) {
  try {
    operation();
  } catch (const LibraryError& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace vorquill21::test
