#pragma once

#include <memory>
#include <string>
#include <vector>

#include "columns/column_source.hpp"
#include "columns/import_report.hpp"
#include "columns/layout.hpp"
#include "program/arguments.hpp"

namespace vorquill21::tool {

/// A column file as it was imported, with the report on it.
class ColumnTable {
 public:
  ColumnTable(Session& session, ColumnSource& source, const Layout& layout, std::int32_t maxColumns,
              const std::string& path);

  std::int32_t Rows() const noexcept { return import_->DataRowCount(); }
  std::int32_t Columns() const noexcept { return import_->ColumnCount(); }
  std::string Header(std::int32_t column) const;
  double Cell(std::int32_t column, std::int32_t row) const {
    return import_->ColumnData(column, row).As<double>();
  }
  const ImportReport& Report() const noexcept { return *report_; }
  const Layout& UsedLayout() const noexcept { return layout_; }

  /// The column of that header, or of that number, counted from 0; a usage failure when there is none.
  std::int32_t ColumnNamed(const std::string& name) const;

 private:
  Layout layout_;
  std::unique_ptr<Platform> platform_;
  std::unique_ptr<CImportColumnData> import_;
  std::unique_ptr<ImportReport> report_;
};

/// The options that say how a column file is to be read. What is not said is found by looking at the file.
struct ColumnOptions {
  std::string file;
  std::string delimiter;
  std::int32_t headerRow = 0;
  std::int32_t firstValueRow = 0;
  std::int32_t maxColumns = 20;
  std::string rows;

  void Declare(CLI::App& command);
  void DeclareRows(CLI::App& command);

  ColumnTable Load(Session& session) const;

  /// The values of a column, of the rows that were asked for.
  std::vector<double> Values(const ColumnTable& table, std::int32_t column) const;

  /// The number of the first row that was asked for, counted from 1.
  std::int32_t FirstRow(const ColumnTable& table) const { return RowRange(table).lower + 1; }

 private:
  Layout LayoutFor(std::string_view head) const;
  Bounds RowRange(const ColumnTable& table) const;
};

/// A required option that names a column.
void DeclareColumn(CLI::App& command, const std::string& option, std::string& column,
                   const std::string& description);

/// The options of commands that fit a polynomial to columns.
struct FitOptions {
  ColumnOptions columns;
  std::string x;
  std::string y;
  std::int32_t order = 1;

  void Declare(CLI::App& command);

  /// Why there is no such polynomial.
  Failure FailureToFit(const LibraryError& error) const;
};

}  // namespace vorquill21::tool
