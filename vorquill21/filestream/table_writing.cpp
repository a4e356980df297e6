#include <cmath>
#include <cstdint>

#include "vorquill21/filestream/table_text.hpp"
#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

bool IsZeroInSinglePrecision(double number) {
  const auto single = static_cast<float>(number);
  if (std::isinf(single) && std::isfinite(number)) throw LibraryError(kOverflow);
  return single == 0.0F;
}

void WriteCell(double number, RecordWriter& writer) {
  if (IsZeroInSinglePrecision(number)) {
    writer.Write(u'0');
  } else {
    writer.Write(number);
  }
}

void WriteCell(const Variant& cell, RecordWriter& writer) {
  if (const double* number = cell.If<double>()) return WriteCell(*number, writer);
  if (ToSingle(cell, writer.DecimalSeparator()) == 0.0F) {
    writer.Write(u'0');
  } else {
    writer.Write(cell);
  }
}

template <typename T>
void WriteRows(const BoundedArray<T>& table, RecordWriter& writer) {
  const std::int32_t rows = CheckedInt32(std::int64_t{table.UpperBound(1)} + 1);
  const std::int32_t columns = CheckedInt32(std::int64_t{table.UpperBound(2)} + 1);
  writer.Write(kLineEnd);
  for (std::int32_t row = 0; row < rows; ++row) {
    if (row > 0) writer.Write(kLineEnd);
    for (std::int32_t column = 0; column < columns; ++column) {
      if (column > 0) writer.Write(u'\t');
      WriteCell(table(row, column), writer);
    }
  }
}

}  // namespace

void WriteTable(const Variant& table, RecordWriter& writer) {
  if (const auto* doubles = table.If<BoundedArray<double>>()) {
    WriteRows(*doubles, writer);
  } else if (const auto* texts = table.If<BoundedArray<Text>>()) {
    WriteRows(*texts, writer);
  } else {
    WriteRows(table.As<BoundedArray<Variant>>(), writer);
  }
}

}  // namespace vorquill21
