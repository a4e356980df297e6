#include <cmath>
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

/// Goes through the cells of a text, row by row; a row begins behind each CR.
class CellReader {
 public:
  CellReader(TextView text, const NumberReader& toNumber) : text_(text), toNumber_(toNumber) {}

  /// Goes to the row behind the next CR and reads as many cells as `cells` holds. Error 9 when it has fewer;
  /// an empty row has none.
  void ReadRow(std::span<double> cells) {
    at_ = FindUnit(text_, at_, u'\r') + 1;
    if (IsAtEnd() || text_[at_] == u'\r') throw LibraryError(kSubscriptOutOfRange);
    cells.front() = ReadCell();
    for (double& cell : cells.subspan(1)) {
      if (IsAtEnd() || text_[at_] != u'\t') throw LibraryError(kSubscriptOutOfRange);
      ++at_;
      cell = ReadCell();
    }
  }

 private:
  bool IsAtEnd() const noexcept { return at_ >= text_.size(); }

  /// Reads the cell that begins here and stops at the TAB or CR that ends it.
  double ReadCell() {
    const std::size_t start = at_;
    const bool beginsRow = !IsAtEnd() && text_[start] == u'\n';
    const char16_t* const begin = text_.data() + start + (beginsRow ? 1 : 0);
    const auto [number, end] = toNumber_.ReadPrefix(begin, text_.data() + text_.size());
    at_ = static_cast<std::size_t>(end - text_.data());
    const bool isWholeCell = IsAtEnd() || text_[at_] == u'\t' || text_[at_] == u'\r';
    if (isWholeCell && end != begin && std::isfinite(number)) return number;
    at_ = FindUnit(text_, start, u'\t', u'\r');
    return toNumber_(text_.substr(start, at_ - start));
  }

  TextView text_;
  const NumberReader& toNumber_;
  std::size_t at_ = 0;
};

std::size_t CountUnits(TextView text, char16_t unit) noexcept {
  std::size_t count = 0;
  for (std::size_t at = FindUnit(text, 0, unit); at < text.size(); at = FindUnit(text, at + 1, unit)) ++count;
  return count;
}

/// The number of cells up to the last one that is not empty.
std::size_t CountColumns(TextView row) noexcept {
  const std::size_t lastFilled = row.find_last_not_of(u'\t');
  return lastFilled == TextView::npos ? 0 : CountUnits(row.substr(0, lastFilled), u'\t') + 1;
}

}  // namespace

TableSize SizeOfTable(TextView text) {
  const std::size_t rows = CountUnits(text, u'\r');
  if (rows == 0) throw LibraryError(kSubscriptOutOfRange);
  const TextView table = text.substr(FindUnit(text, 0, u'\r') + 1);
  const std::size_t columns = CountColumns(table.substr(0, FindUnit(table, 0, u'\r')));
  if (columns == 0) throw LibraryError(kSubscriptOutOfRange);
  return {rows, columns};
}

BoundedArray<double> ReadTable(TextView text, const TableSize& size, const NumberReader& toNumber) {
  // A cell takes one unit at least, its delimiter: with fewer units than cells some row is too short.
  if (size.columns > text.size() / size.rows) throw LibraryError(kSubscriptOutOfRange);
  BoundedArray<double> table({0, LastIndex(size.rows)}, {0, LastIndex(size.columns)});
  CellReader reader(text, toNumber);
  for (std::span<double> cells = table.Elements(); !cells.empty(); cells = cells.subspan(size.columns)) {
    reader.ReadRow(cells.first(size.columns));
  }
  return table;
}

}  // namespace vorquill21
