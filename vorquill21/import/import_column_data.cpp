#include "vorquill21/import/import_column_data.hpp"

#include <algorithm>
#include <utility>

#include "vorquill21/frame/types/checked.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/import/column_reader.hpp"
#include "vorquill21/import/field_splitter.hpp"
#include "vorquill21/import/line_encoding.hpp"
#include "vorquill21/import/line_reader.hpp"

namespace vorquill21 {
namespace {

constexpr TextView kSettingsSection = u"Import Settings";
constexpr TextView kHeaderRowKey = u"HeaderRow";
constexpr TextView kFirstValueRowKey = u"FirstValueRow";
constexpr TextView kDelimiterKey = u"Delimiter";

/// The element at the index; error 9 when there is none.
template <typename List>
auto& At(List& list, std::int32_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= list.size()) throw LibraryError(kSubscriptOutOfRange);
  return list[static_cast<std::size_t>(index)];
}

template <typename Lines>
void SkipLines(Lines& lines, std::int32_t count) {
  for (; count > 0; --count) lines.SkipLine();
}

/// The header line; empty when `row` says that there is none.
template <typename Lines>
auto ReadHeaderLine(Lines& lines, std::int32_t row) -> decltype(lines.NextLine()) {
  if (row <= 0) return {};
  SkipLines(lines, row - 1);
  return lines.NextLine();
}

void ReportIgnoredColumns(std::int32_t maxColumns, Text* status) {
  if (status == nullptr) return;
  *status = u"Maximum number of data columns exceeded. Columns " + NumberToText(maxColumns) +
            u" and above will be ignored.";
}

}  // namespace

CImportColumnData::CImportColumnData(Platform& platform) : platform_(platform) {}

Variant CImportColumnData::ColumnData(std::int32_t anColumnIndex, std::int32_t anDataIndex) const {
  constexpr std::int32_t kWholeColumn = -1;
  const std::vector<double>& column = At(columns_, anColumnIndex);
  if (anDataIndex != kWholeColumn) return At(column, anDataIndex);
  return TranslatingMemoryErrors(
      [&] { return BoundedArray<Variant>(std::vector<Variant>(column.begin(), column.end())); });
}

Variant CImportColumnData::ColumnHeaderData(std::int32_t anIndex) const {
  if (anIndex < 0 || anIndex > headerUpperBound_) throw LibraryError(kSubscriptOutOfRange);
  const auto index = static_cast<std::size_t>(anIndex);
  return TranslatingMemoryErrors([&] { return index < headers_.size() ? headers_[index] : Text(); });
}

bool CImportColumnData::Import(Text* asStatus) {
  lastImportSuccessful_ = false;
  try {
    TranslatingMemoryErrors([&] { ImportData(asStatus); });
  } catch (const LibraryError&) {
    constexpr TextView kFailure = u"CImportColumnData.ImportData: An error occurred while importing data";
    if (asStatus != nullptr) TranslatingMemoryErrors([&] { *asStatus = kFailure; });
    return false;
  }
  lastImportSuccessful_ = true;
  return true;
}

void CImportColumnData::ImportData(Text* asStatus) {
  if (delimiter_.empty()) throw LibraryError(kInvalidProcedureCall);
  SizeHeaderList();
  const Locale& locale = platform_.GetLocale();
  LineReader reader(platform_.GetFiles().OpenForReading(filepath_));
  if (CanBeMatchedAsBytes(delimiter_, locale)) {
    ImportLines(ByteLines(reader, locale), asStatus);
  } else {
    ImportLines(TextLines(reader, locale), asStatus);
  }
}

void CImportColumnData::SizeHeaderList() {
  const std::int32_t upperBound = CheckedInt32(std::int64_t{maxColumns_} - 1);
  if (upperBound < 0) throw LibraryError(kSubscriptOutOfRange);
  headers_.clear();
  headerUpperBound_ = upperBound;
}

template <typename Lines>
void CImportColumnData::ImportLines(Lines lines, Text* asStatus) {
  const FieldSplitter splitter(lines.Encoded(delimiter_));
  TakeHeaders(lines, splitter, asStatus);
  SkipLines(lines, CheckedInt32(std::int64_t{firstValueRow_} - headerRow_ - 1));
  std::vector<Column> columns = ReadColumns(lines, splitter, headers_.size());
  dataRowCount_ = CheckedInt32(static_cast<std::int64_t>(columns.front().size()));
  columns_ = std::move(columns);
}

template <typename Lines, typename Splitter>
void CImportColumnData::TakeHeaders(Lines& lines, const Splitter& splitter, Text* asStatus) {
  typename Splitter::View headerLine = ReadHeaderLine(lines, headerRow_);
  typename Splitter::View field;
  columnCount_ = 0;
  while (splitter.GetNextField(headerLine, field)) {
    if (columnCount_ == maxColumns_ - 1) {
      ReportIgnoredColumns(maxColumns_, asStatus);
      break;
    }
    headers_.push_back(lines.Decoded(field));
    ++columnCount_;
  }
  if (columnCount_ == 0) throw LibraryError(kSubscriptOutOfRange);
  headerUpperBound_ = columnCount_ - 1;
}

void CImportColumnData::OffsetColumnData(std::int32_t anColumnIndex, double arOffsetValue) {
  for (double& value : At(columns_, anColumnIndex)) {
    value = Checked(value - arOffsetValue, value, arOffsetValue);
  }
}

void CImportColumnData::SettingsReadFromRegistry() {
  const Settings& settings = platform_.GetSettings();
  const char16_t decimalSeparator = platform_.GetLocale().DecimalSeparator();
  const auto stored = [&](TextView key, TextView defaultText) {
    return TranslatingMemoryErrors(
        [&] { return settings.Get(kLibraryTitle, kSettingsSection, key, defaultText); });
  };
  HeaderRow(ToInt32(stored(kHeaderRowKey, u"9"), decimalSeparator));
  FirstValueRow(ToInt32(stored(kFirstValueRowKey, u"11"), decimalSeparator));
  Delimiter(stored(kDelimiterKey, u"\t"));
}

void CImportColumnData::SettingsWriteToRegistry() const {
  const auto store = [this](TextView key, TextView value) {
    platform_.GetSettings().Set(kLibraryTitle, kSettingsSection, key, value);
  };
  TranslatingMemoryErrors([&] {
    store(kHeaderRowKey, NumberToText(headerRow_));
    store(kFirstValueRowKey, NumberToText(firstValueRow_));
    store(kDelimiterKey, delimiter_);
  });
}

}  // namespace vorquill21
