#include <algorithm>
#include <vector>

#include "vorquill21/filestream/document.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/filestream/reporting.hpp"
#include "vorquill21/filestream/table_text.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

Text PageName(TextView tableName, std::int32_t page) {
  return Text(tableName).append(u" PAGE ").append(NumberToText(page));
}

/// Rows 0 to `endRow` and columns 0 to `endColumn` of one page.
template <typename T>
Variant PageOf(const BoundedArray<T>& table, std::int32_t endRow, std::int32_t endColumn, std::int32_t page) {
  // Both corners first: a page that reaches outside the table needs no memory.
  static_cast<void>(table(0, 0, page));
  static_cast<void>(table(endRow, endColumn, page));
  BoundedArray<T> cells({0, endRow}, {0, endColumn});
  for (std::int32_t row = 0; row <= endRow; ++row) {
    for (std::int32_t column = 0; column <= endColumn; ++column) {
      cells(row, column) = table(row, column, page);
    }
  }
  return cells;
}

Variant PageOf(const Variant& table, std::int32_t endRow, std::int32_t endColumn, std::int32_t page) {
  if (const auto* doubles = table.If<BoundedArray<double>>())
    return PageOf(*doubles, endRow, endColumn, page);
  if (const auto* texts = table.If<BoundedArray<Text>>()) return PageOf(*texts, endRow, endColumn, page);
  return PageOf(table.As<BoundedArray<Variant>>(), endRow, endColumn, page);
}

}  // namespace

bool CFileStream::AddTable2d(TextView asTableName, const Variant& avTable) {
  const auto add = [&] {
    Document::Draft record(*msFileStream);
    RecordWriter writer(msSystemDecSep, record.Target());
    writer.WriteName(asTableName);
    writer.Write(u'\t');
    WriteTable(avTable, writer);
    writer.Write(kLineEnd);
    writer.Flush();
    RemoveField(asTableName);
    record.Add();
    return true;
  };
  return ReportingErrors(platform_, mbQuiet, false, add, [&](const LibraryError&) {
    return Text(u"An error occurred while adding table: ").append(asTableName).append(u" to the filestream");
  });
}

bool CFileStream::AddTable3d(TextView asTableName, const Variant& avTable, std::int32_t anEndRowIdx,
                             std::int32_t anEndlnColIdx, std::int32_t anEndPageIdx) {
  const auto add = [&] {
    if (avTable.IsEmpty()) return true;
    const auto endOf = [&](std::int32_t end, int dimension) {
      return end == 0 ? ArrayBounds(avTable, dimension).upper : end;
    };
    const std::int32_t endRow = endOf(anEndRowIdx, 1);
    const std::int32_t endColumn = endOf(anEndlnColIdx, 2);
    const std::int32_t endPage = endOf(anEndPageIdx, 3);
    for (std::int32_t page = 1; page <= endPage; ++page) {
      AddTable2d(PageName(asTableName, page), PageOf(avTable, endRow, endColumn, page));
    }
    return true;
  };
  return ReportingErrors(platform_, mbQuiet, false, add, [&](const LibraryError&) {
    return Text(u"An error occurred while adding 3d table: ")
        .append(asTableName)
        .append(u" to the filestream");
  });
}

Variant CFileStream::GetTable2d(TextView asTableName) {
  const auto get = [&]() -> Variant {
    const std::optional<TextView> fieldText = GetField(asTableName);
    if (!fieldText) return {};
    const TableSize size = SizeOfTable(*fieldText);
    return ReadTable(*fieldText, size, ReaderOfNumbers());
  };
  return ReportingErrors(platform_, mbQuiet, Variant(), get, [&](const LibraryError&) {
    return Text(u"An error occurred while getting table: ").append(asTableName);
  });
}

Variant CFileStream::GetTable3d(TextView asTableName, std::int32_t anEndRowIdx, std::int32_t anEndColIdx,
                                std::int32_t anEndPageIdx) {
  const auto get = [&]() -> Variant {
    if (std::min({anEndRowIdx, anEndColIdx, anEndPageIdx}) < 0) throw LibraryError(kSubscriptOutOfRange);
    // The pages first: where one is missing or too small, the array needs no memory.
    std::vector<Variant> pages;
    for (std::int32_t page = 1; page <= anEndPageIdx; ++page) {
      pages.push_back(GetTable2d(PageName(asTableName, page)));
      static_cast<void>(pages.back().As<BoundedArray<double>>()(anEndRowIdx, anEndColIdx));
    }
    BoundedArray<Variant> table({0, anEndRowIdx}, {0, anEndColIdx}, {0, anEndPageIdx});
    for (std::int32_t row = 0; row <= anEndRowIdx; ++row) {
      for (std::int32_t column = 0; column <= anEndColIdx; ++column) {
        for (std::int32_t page = 1; page <= anEndPageIdx; ++page) {
          const Variant& cells = pages[static_cast<std::size_t>(page - 1)];
          table(row, column, page) = cells.As<BoundedArray<double>>()(row, column);
        }
      }
    }
    return table;
  };
  return ReportingErrors(platform_, mbQuiet, Variant(false), get, [&](const LibraryError&) {
    return Text(u"An error occurred while getting 3d table: ").append(asTableName);
  });
}

}  // namespace vorquill21
