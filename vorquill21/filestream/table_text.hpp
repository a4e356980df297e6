#pragma once

#include <cstddef>

#include "vorquill21/filestream/number_reader.hpp"
#include "vorquill21/filestream/record_writer.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"

namespace vorquill21 {

/// Writes the rows of a two-dimensional array from index (0, 0) on, each after a CR LF, cells separated by
/// TAB. A cell that is 0 in single precision is written "0". Errors 9 and 13 for an array that has not two
/// dimensions with lower bounds up to 0, error 13 for a cell that is no number, 6 for one beyond single
/// precision; a part of the table is written then.
void WriteTable(const Variant& table, RecordWriter& writer);

struct TableSize {
  std::size_t rows = 0;
  std::size_t columns = 0;
};

/// The size of the table in `text`: each CR begins a row, and the first row tells the columns, up to its last
/// cell that is not empty. Error 9 when there is no row or no column.
TableSize SizeOfTable(TextView text);

/// The cells of the table in `text`, read by `toNumber`. Error 9 when a row has too few of them, without
/// memory for more cells than `text` has units.
BoundedArray<double> ReadTable(TextView text, const TableSize& size, const NumberReader& toNumber);

}  // namespace vorquill21
