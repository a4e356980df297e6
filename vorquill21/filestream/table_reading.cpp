#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "vorquill21/filestream/bracket_search.hpp"
#include "vorquill21/filestream/table_text.hpp"
#include "vorquill21/frame/types/checked.hpp"

namespace vorquill21 {
namespace {

std::int32_t LastIndex(std::size_t count) {
  return CheckedInt32(static_cast<std::int64_t>(count) - 1);
}

/// Cuts the next row, up to a CR or the end, off the text.
TextView TakeRow(TextView& text) noexcept {
  const std::size_t end = FindUnit(text, 0, u'\r');
  const TextView row = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return row;
}

std::size_t CountColumns(TextView row) noexcept {
  const std::size_t lastFilled = row.find_last_not_of(u'\t');
  if (lastFilled == TextView::npos) return 0;
  return static_cast<std::size_t>(
             std::count(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(lastFilled), u'\t')) +
         1;
}

/// Reads as many cells as `cells` holds from the beginning of the row.
void ReadRow(TextView row, const NumberReader& toNumber, std::span<double> cells) {
  if (row.empty()) throw LibraryError(kSubscriptOutOfRange);
  std::size_t from = 0;
  for (double& cell : cells) {
    if (from > row.size()) throw LibraryError(kSubscriptOutOfRange);
    const std::size_t tab = FindUnit(row, from, u'\t');
    cell = toNumber(row.substr(from, tab - from));
    from = tab + 1;
  }
}

}  // namespace

TableSize SizeOfTable(TextView text) {
  const auto rows = static_cast<std::size_t>(std::ranges::count(text, u'\r'));
  TextView rest = text;
  TakeRow(rest);  // the line of the name
  const std::size_t columns = CountColumns(TakeRow(rest));
  // A cell takes one unit at least, its delimiter: with fewer units than cells some row is too short.
  if (rows == 0 || columns == 0 || columns > text.size() / rows) throw LibraryError(kSubscriptOutOfRange);
  return {rows, columns};
}

BoundedArray<double> ReadTable(TextView text, const TableSize& size, const NumberReader& toNumber) {
  BoundedArray<double> table({0, LastIndex(size.rows)}, {0, LastIndex(size.columns)});
  TakeRow(text);  // the line of the name
  for (std::span<double> cells = table.Elements(); !cells.empty(); cells = cells.subspan(size.columns)) {
    ReadRow(TakeRow(text), toNumber, cells.first(size.columns));
  }
  return table;
}

}  // namespace vorquill21
