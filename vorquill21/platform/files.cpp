#include "vorquill21/platform/files.hpp"

#include <algorithm>
#include <array>

namespace vorquill21 {

void ByteReader::Skip(std::uint64_t count) {
  std::array<char, 4096> thrownAway;
  while (count > 0) {
    const std::size_t piece = static_cast<std::size_t>(std::min<std::uint64_t>(count, thrownAway.size()));
    const std::size_t passed = Read(std::span(thrownAway).first(piece));
    if (passed == 0) return;
    count -= passed;
  }
}

std::string ReadRest(ByteReader& reader, std::uint64_t expectedCount) {
  constexpr std::size_t kLeastRoom = 4096;
  // One byte more than is expected, so that the end is seen without growing.
  std::string bytes(static_cast<std::size_t>(expectedCount) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + std::max(kLeastRoom, bytes.size() / 2));
    const std::size_t count = reader.Read(std::span(bytes).subspan(filled));
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  return bytes;
}

std::string ReadWholeFile(Files& files, TextView path) {
  const auto reader = files.OpenForReading(path);
  return ReadRest(*reader, reader->Length());
}

}  // namespace vorquill21
