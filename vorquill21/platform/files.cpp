#include "vorquill21/platform/files.hpp"

#include <algorithm>

namespace vorquill21 {

std::string ReadWholeFile(Files& files, TextView path) {
  constexpr std::size_t kLeastRoom = 4096;
  const auto reader = files.OpenForReading(path);
  // One byte more than the length, so that the end is seen without growing.
  std::string bytes(static_cast<std::size_t>(reader->Length()) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + std::max(kLeastRoom, bytes.size() / 2));
    const std::size_t count = reader->Read(std::span(bytes).subspan(filled));
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  return bytes;
}

}  // namespace vorquill21
