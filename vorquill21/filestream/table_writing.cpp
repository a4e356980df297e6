#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "vorquill21/filestream/table_text.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

/// Writes the cells of a table; short ones are collected in a block before they go to the text.
class CellWriter {
 public:
  CellWriter(char16_t decimalSeparator, Text& text) : decimalSeparator_(decimalSeparator), text_(text) {}

  /// Writes at most two units that stand before a cell.
  void WriteDelimiter(TextView delimiter) {
    if (block_.size() - used_ < delimiter.size() + kNumberTextCapacity) Flush();
    for (const char16_t unit : delimiter) block_[used_++] = unit;
  }

  /// Writes a cell after its delimiter.
  void WriteCell(double number) {
    if (IsZeroInSinglePrecision(number)) {
      block_[used_++] = u'0';
    } else {
      const char16_t* const end = WriteNumber(number, decimalSeparator_, block_.data() + used_);
      used_ = static_cast<std::size_t>(end - block_.data());
    }
  }

  void WriteCell(const Variant& cell) {
    if (const double* number = cell.If<double>()) return WriteCell(*number);
    const bool isZero = ToSingle(cell, decimalSeparator_) == 0.0F;
    Flush();
    text_ += isZero ? Text(u"0") : ToText(cell, decimalSeparator_);
  }

  void Flush() {
    text_.append(block_.data(), used_);
    used_ = 0;
  }

 private:
  static bool IsZeroInSinglePrecision(double number) {
    const auto single = static_cast<float>(number);
    if (std::isinf(single) && std::isfinite(number)) throw LibraryError(kOverflow);
    return single == 0.0F;
  }

  std::array<char16_t, 4096> block_;
  std::size_t used_ = 0;
  char16_t decimalSeparator_;
  Text& text_;
};

template <typename T>
void AppendRows(const BoundedArray<T>& table, CellWriter& writer) {
  const std::int32_t lastRow = table.UpperBound(1);
  const std::int32_t lastColumn = table.UpperBound(2);
  writer.WriteDelimiter(u"\r\n");
  for (std::int32_t row = 0; row <= lastRow; ++row) {
    if (row > 0) writer.WriteDelimiter(u"\r\n");
    for (std::int32_t column = 0; column <= lastColumn; ++column) {
      if (column > 0) writer.WriteDelimiter(u"\t");
      writer.WriteCell(table(row, column));
    }
  }
}

}  // namespace

void AppendTable(const Variant& table, char16_t decimalSeparator, Text& text) {
  CellWriter writer(decimalSeparator, text);
  if (const auto* doubles = table.If<BoundedArray<double>>()) {
    AppendRows(*doubles, writer);
  } else if (const auto* texts = table.If<BoundedArray<Text>>()) {
    AppendRows(*texts, writer);
  } else {
    AppendRows(table.As<BoundedArray<Variant>>(), writer);
  }
  writer.Flush();
}

}  // namespace vorquill21
