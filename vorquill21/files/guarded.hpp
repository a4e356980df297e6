#pragma once

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

/// What `operation` returns, or `failure` when it raises an error, running out of memory among them.
template <typename Result, typename Operation>
Result ResultOr(Result failure, Operation operation) {
  try {
    return TranslatingMemoryErrors(operation);
  } catch (const LibraryError&) {
    return failure;
  }
}

/// Whether `operation` ran to its end without raising an error.
template <typename Operation>
bool Succeeds(Operation operation) {
  return ResultOr(false, [&operation] {
    operation();
    return true;
  });
}

}  // namespace vorquill21
