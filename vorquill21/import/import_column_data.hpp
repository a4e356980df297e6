#pragma once

#include <cstdint>
#include <vector>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// Reads a delimited text file of numeric columns with one header line into memory: the column headers and,
/// for each column, its values as doubles. An object holds the result of its last import.
///
/// A host sets the path, the delimiter and the two row numbers (or reads them from the user's settings),
/// calls Import, and asks for headers and values by the 0-based index of their column. Setters store what
/// they are given; nothing is checked before Import.
///
/// Files are 8-bit text in the system's code page. A line ends at CR LF, at a lone CR or at a lone LF; the
/// last one needs no end. Within a line the delimiter, a text of any length, is matched exactly. A run of
/// delimiters counts as one and delimiters at the beginning of a line do not count, so there are no empty
/// fields: a missing value shifts the ones after it into its column.
class VORQUILL21_API CImportColumnData {
 public:
  explicit CImportColumnData(Platform& platform = Platform::Native());

  /// Number of columns that the header line gave in the last import, at most MaxColumns - 1; 0 before it.
  std::int32_t ColumnCount() const noexcept { return columnCount_; }

  /// The value (a double) at the position `anDataIndex` of a column, or, with -1, the whole column: an array
  /// of variants holding doubles with the bounds 0 to DataRowCount - 1, the array without elements (0 to -1)
  /// when there are no rows. Columns and positions that do not exist are error 9. Cost of a whole column:
  /// linear.
  ///
  /// The columns are those of the last import that succeeded.
  Variant ColumnData(std::int32_t anColumnIndex, std::int32_t anDataIndex = -1) const;

  /// The header (a text) of a column; error 9 outside 0 to ColumnCount - 1. An import that failed before its
  /// header line was complete leaves positions up to MaxColumns - 1, which are the empty text.
  Variant ColumnHeaderData(std::int32_t anIndex) const;

  /// Number of values in each column of the last import that succeeded; 0 before it.
  std::int32_t DataRowCount() const noexcept { return dataRowCount_; }

  /// The text between two fields; empty at first. With an empty delimiter every import fails.
  Text Delimiter() const {
    return TranslatingMemoryErrors([this] { return delimiter_; });
  }
  void Delimiter(TextView asDelimiter) {
    TranslatingMemoryErrors([&] { delimiter_ = asDelimiter; });
  }

  /// The file to be imported; empty at first.
  Text Filepath() const {
    return TranslatingMemoryErrors([this] { return filepath_; });
  }
  void Filepath(TextView asFilepath) {
    TranslatingMemoryErrors([&] { filepath_ = asFilepath; });
  }

  /// Number of the first line of values, the first line of the file being 1; 0 at first. Up to HeaderRow + 1
  /// the values follow the header line.
  std::int32_t FirstValueRow() const noexcept { return firstValueRow_; }
  void FirstValueRow(std::int32_t anFirstValueRow) noexcept { firstValueRow_ = anFirstValueRow; }

  /// Number of the header line, the first line of the file being 1; 0 at first. Without a header line (0 or
  /// less) an import fails.
  std::int32_t HeaderRow() const noexcept { return headerRow_; }
  void HeaderRow(std::int32_t anHeaderRow) noexcept { headerRow_ = anHeaderRow; }

  /// Imports the file. True on success.
  ///
  /// Each field of the header line is a column, up to MaxColumns - 1 of them. When there are more, the rest
  /// is ignored and `asStatus` receives "Maximum number of data columns exceeded. Columns 20 and above will
  /// be ignored." (with the value of MaxColumns); otherwise `asStatus` is left alone.
  ///
  /// Each line of values gives one row; fields beyond the last column are ignored. A blank line, or one with
  /// fewer fields than columns, ends the data. In a field every ":" counts as ".", and its value is the
  /// number that it begins with (see LeadingNumber): 12.3 for "12:30", 3.5 for "3.5kg", 0 for "n/a". A file
  /// without a line of values imports with 0 rows.
  ///
  /// On any error (the file cannot be read or ends before the first line of values, a header line without
  /// fields, a number too large for a double, an empty delimiter, MaxColumns below 2) the result is False,
  /// `asStatus` receives "CImportColumnData.ImportData: An error occurred while importing data",
  /// LastImportSuccessful is False, the columns and DataRowCount stay those of the last import that
  /// succeeded, and ColumnCount and the headers are as far as the import got. No message is shown.
  ///
  /// Cost: linear in the length of the file; memory for the values and for the longest line.
  bool Import(Text* asStatus = nullptr);

  /// Whether the last call of Import succeeded.
  bool LastImportSuccessful() const noexcept { return lastImportSuccessful_; }

  /// One more than the number of columns that an import keeps; 20 at first.
  std::int32_t MaxColumns() const noexcept { return maxColumns_; }
  void MaxColumns(std::int32_t anMaxColumns) noexcept { maxColumns_ = anMaxColumns; }

  /// Subtracts `arOffsetValue` from every value of a column: a positive offset lowers them. A column that
  /// does not exist is error 9; a difference that overflows is error 6, the values before it being changed
  /// already.
  void OffsetColumnData(std::int32_t anColumnIndex, double arOffsetValue);

  /// Sets HeaderRow, FirstValueRow and Delimiter, in this order, from the user's settings (application: the
  /// library's title, section "Import Settings", the keys named like the properties). What is not stored is
  /// row 9, row 11 and a tab. A stored row that is no number raises error 13, one beyond 32 bits error 6; the
  /// properties before it are set then.
  void SettingsReadFromRegistry();

  /// Stores HeaderRow, FirstValueRow and Delimiter, in this order, in the same place. Raises the error that
  /// storing gives; the values before it are stored then.
  void SettingsWriteToRegistry() const;

 private:
  using Column = std::vector<double>;

  void ImportData(Text* asStatus);
  void SizeHeaderList();
  template <typename Lines>
  void ImportLines(Lines lines, Text* asStatus);
  template <typename Lines, typename Splitter>
  void TakeHeaders(Lines& lines, const Splitter& splitter, Text* asStatus);

  Platform& platform_;
  Text filepath_;
  Text delimiter_;
  std::int32_t headerRow_ = 0;
  std::int32_t firstValueRow_ = 0;
  std::int32_t maxColumns_ = 20;
  bool lastImportSuccessful_ = false;
  std::int32_t columnCount_ = 0;
  std::int32_t dataRowCount_ = 0;
  std::vector<Text> headers_;
  std::int32_t headerUpperBound_ = -1;  // positions beyond headers_ hold the empty text
  std::vector<Column> columns_;
};

}  // namespace vorquill21
