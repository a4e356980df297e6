#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vorquill21/import/field_splitter.hpp"

namespace vorquill21 {

/// For how many rows to make room when `rows` have filled what there was, `passed` of the `length` bytes of
/// the file behind them (a length of 0 is not known). It is as many as the file should have in all, so that
/// the values are moved seldom, and never more than the rest of it can hold.
std::size_t RoomForRows(std::size_t rows, std::size_t columnCount, std::uint64_t passed,
                        std::uint64_t length);

/// Reads the next line's values; false when it has fewer fields than there are values.
template <typename Lines>
bool ReadRow(Lines& lines, const FieldSplitter<typename Lines::Char>& splitter, std::vector<double>& row) {
  if (const auto* const rowEnd = splitter.GetRowAtFront(lines.Held(), row)) {
    lines.SkipLineFrom(rowEnd);
    return true;
  }
  return splitter.GetRow(lines.NextLine(), row);
}

/// Reads the first `columnCount` fields of each line, up to the first line that has fewer.
template <typename Lines>
std::vector<std::vector<double>> ReadColumns(Lines& lines,
                                             const FieldSplitter<typename Lines::Char>& splitter,
                                             std::size_t columnCount) {
  std::vector<std::vector<double>> columns(columnCount);
  std::vector<double> row(columnCount);
  std::size_t room = 0;
  for (std::size_t rows = 0; !lines.AtEnd() && ReadRow(lines, splitter, row); ++rows) {
    if (rows == room) {
      room = RoomForRows(rows, columnCount, lines.BytesPassed(), lines.Length());
      for (std::vector<double>& column : columns) column.reserve(room);
    }
    for (std::size_t column = 0; column < columnCount; ++column) columns[column].push_back(row[column]);
  }
  return columns;
}

}  // namespace vorquill21
