#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "vorquill21/import/field_splitter.hpp"

namespace vorquill21 {

/// For how many rows to make room when `rows` have filled what there was, `passed` of the `length` bytes of
/// the file behind them (a length of 0 is not known). It is as many as the file should have in all, so that
/// the values are moved seldom, and never more than the rest of it can hold.
std::size_t RoomForRows(std::size_t rows, std::size_t columnCount, std::uint64_t passed,
                        std::uint64_t length);

/// Reads the next rows of `columnCount` values, one behind the other into `values`, and returns their number:
/// at least one and as many as there is room for at most, but 0 when the next line has fewer fields.
template <typename Lines>
std::size_t ReadRows(Lines& lines, const FieldSplitter<typename Lines::Char>& splitter,
                     std::size_t columnCount, std::span<double> values) {
  if constexpr (std::same_as<typename Lines::Char, char>) {
    const auto rows = splitter.GetRowsAtFront(lines.Held(), columnCount, values);
    lines.SkipLinesTo(rows.end);
    if (rows.count > 0) return rows.count;
  }
  return splitter.GetRow(lines.NextLine(), values.first(columnCount)) ? 1 : 0;
}

/// Puts rows of values, one behind the other, below those in the columns.
inline void AppendRows(std::span<const double> values, std::vector<std::vector<double>>& columns) {
  for (std::size_t index = 0; index < columns.size(); ++index) {
    std::vector<double>& column = columns[index];
    const std::size_t before = column.size();
    column.resize(before + values.size() / columns.size());
    double* out = column.data() + before;
    for (std::size_t at = index; at < values.size(); at += columns.size()) *out++ = values[at];
  }
}

/// Reads the first `columnCount` fields of each line, up to the first line that has fewer.
template <typename Lines>
std::vector<std::vector<double>> ReadColumns(Lines& lines,
                                             const FieldSplitter<typename Lines::Char>& splitter,
                                             std::size_t columnCount) {
  constexpr std::size_t kValuesAtOnce = 1024;  // stay in the fastest memory
  std::vector<std::vector<double>> columns(columnCount);
  std::vector<double> values(std::max(kValuesAtOnce, columnCount));
  std::size_t rows = 0;
  std::size_t room = 0;
  while (!lines.AtEnd()) {
    const std::size_t count = ReadRows(lines, splitter, columnCount, values);
    if (count == 0) break;
    rows += count;
    if (rows > room) {
      room = RoomForRows(rows - 1, columnCount, lines.BytesPassed(), lines.Length());
      for (std::vector<double>& column : columns) column.reserve(room);
    }
    AppendRows(std::span(values).first(count * columnCount), columns);
  }
  return columns;
}

}  // namespace vorquill21
