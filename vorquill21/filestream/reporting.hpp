#pragma once

#include <utility>

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// What `work()` returns. When it raises an error, the user is shown `sentence(error)`, unless `isQuiet`, and
/// `failure` is returned.
template <typename Result, typename Work, typename Sentence>
Result ReportingErrors(const Platform& platform, bool isQuiet, Result failure, Work&& work,
                       Sentence&& sentence) {
  try {
    return TranslatingMemoryErrors(std::forward<Work>(work));
  } catch (const LibraryError& error) {
    if (!isQuiet) TranslatingMemoryErrors([&] { platform.ShowError(sentence(error)); });
    return failure;
  }
}

}  // namespace vorquill21
