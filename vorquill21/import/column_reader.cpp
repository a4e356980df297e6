#include "vorquill21/import/column_reader.hpp"

namespace vorquill21 {

std::size_t RoomForRows(std::size_t rows, std::size_t columnCount, std::uint64_t passed,
                        std::uint64_t length) {
  constexpr std::size_t kLeastRoom = 16;
  constexpr std::size_t kFewRows = 500;  // say too little about the rest of the file
  constexpr double kMargin = 1.02;
  constexpr std::uint64_t kLeastBytesOfValue = 2;
  const std::size_t doubled = std::max(2 * rows, kLeastRoom);
  if (length < passed) return doubled;
  const double portions = static_cast<double>(length) / static_cast<double>(passed);
  const auto expected = static_cast<std::size_t>(kMargin * static_cast<double>(rows) * portions);
  const std::size_t wanted = rows < kFewRows ? doubled : std::max(expected, rows + rows / 4);
  const std::uint64_t most = rows + 1 + (length - passed + 1) / (kLeastBytesOfValue * columnCount);
  return static_cast<std::size_t>(std::min<std::uint64_t>(wanted, most));
}

}  // namespace vorquill21
