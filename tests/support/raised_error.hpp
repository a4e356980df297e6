#pragma once

#include <cstdint>
#include <ostream>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::test {

/// What a LibraryError says.
struct RaisedError {
  std::int32_t number = 0;
  Text source;
  Text description;

  friend bool operator==(const RaisedError&, const RaisedError&) = default;
  friend std::ostream& operator<<(std::ostream& out, const RaisedError& error) {
    return out << error.number << " from \"" << ToUtf8(error.source) << "\": " << ToUtf8(error.description);
  }
};

/// The LibraryError that `operation` raises; that of number 0 when it raises none.
template <typename Operation>
RaisedError ErrorRaisedBy(Operation operation) {
  try {
    operation();
  } catch (const LibraryError& error) {
    return {error.Number(), Text(error.Source()), Text(error.Description())};
  }
  return {};
}

}  // namespace vorquill21::test
