#include "columns/column_table.hpp"

#include <cmath>

#include "data_file/cell_text.hpp"

namespace vorquill21::tool {

ColumnTable::ColumnTable(Session& session, ColumnSource& source, const Layout& layout,
                         std::int32_t maxColumns, const std::string& path)
    : layout_(layout),
      platform_(std::make_unique<Platform>(source, session.GetDesktop(), session.GetLocale(),
                                           session.GetPlatform().GetProcess(),
                                           session.GetPlatform().GetSettings())),
      import_(std::make_unique<CImportColumnData>(*platform_)),
      report_(std::make_unique<ImportReport>(ToCodePage(session.GetLocale(), FromUtf8(layout.delimiter)),
                                             layout, maxColumns)) {
  source.Observe([this](std::string_view bytes) { report_->Add(bytes); });
  import_->Filepath(FromUtf8(path));
  import_->Delimiter(FromUtf8(layout.delimiter));
  import_->HeaderRow(layout.headerRow);
  import_->FirstValueRow(layout.firstValueRow);
  import_->MaxColumns(maxColumns);
  const bool isImported = import_->Import();
  source.ReadRest();
  report_->Finish();
  source.Observe({});
  if (isImported) return;
  const std::string reason = report_->ReasonOfFailure();
  throw Failure(ExitCode::kRefused, "cannot import " + path + (reason.empty() ? "" : ": " + reason));
}

std::string ColumnTable::Header(std::int32_t column) const {
  return ToUtf8(import_->ColumnHeaderData(column).As<Text>());
}

std::int32_t ColumnTable::ColumnNamed(const std::string& name) const {
  for (std::int32_t column = 0; column < Columns(); ++column) {
    if (Header(column) == name) return column;
  }
  const auto number = TextToNumber(std::string_view(name), '.');
  if (number && *number >= 0 && *number < Columns() && *number == static_cast<std::int32_t>(*number)) {
    return static_cast<std::int32_t>(*number);
  }
  std::string known;
  for (std::int32_t column = 0; column < Columns(); ++column)
    known += (column > 0 ? ", " : "") + Header(column);
  throw Failure(ExitCode::kUsage, "there is no column " + name + "; there are " + known);
}

void ColumnOptions::Declare(CLI::App& command) {
  DeclareFile(command, file, "The column file");
  command
      .add_option("-d,--delimiter", delimiter,
                  "Between fields: tab, comma, semicolon, blank, bar or any text")
      ->type_name("TEXT");
  command.add_option("--header-row", headerRow, "The line of the headers, counted from 1")
      ->type_name("N")
      ->check(PositiveNumber());
  command.add_option("--first-row", firstValueRow, "The first line of values")
      ->type_name("N")
      ->check(PositiveNumber());
  command.add_option("--max-columns", maxColumns, "One more than the columns that are read")
      ->type_name("N")
      ->capture_default_str()
      ->check(NumberBetween(2, 1000000));
}

void ColumnOptions::DeclareRows(CLI::App& command) {
  command.add_option("--rows", rows, "Only these rows of values, counted from 1")->type_name("FIRST:LAST");
}

void DeclareColumn(CLI::App& command, const std::string& option, std::string& column,
                   const std::string& description) {
  command.add_option(option, column, description + ": header, or number counted from 0")
      ->required()
      ->type_name("COLUMN");
}

void FitOptions::Declare(CLI::App& command) {
  columns.Declare(command);
  columns.DeclareRows(command);
  DeclareColumn(command, "-x,--x", x, "The column of x");
  DeclareColumn(command, "-y,--y", y, "The column of y");
  command.add_option("-n,--order", order, "The order of the polynomial")
      ->type_name("N")
      ->capture_default_str()
      ->check(NumberBetween(0, 100));
}

Failure FitOptions::FailureToFit(const LibraryError& error) const {
  const std::string polynomial = "a polynomial of order " + std::to_string(order);
  if (error.Number() == kDivisionByZero)
    return {ExitCode::kRefused, "the points do not determine " + polynomial};
  return FailureOf("cannot fit " + polynomial, error);
}

ColumnTable ColumnOptions::Load(Session& session) const {
  ColumnSource source(session, file);
  return {session, source, LayoutFor(source.Head()), maxColumns, file};
}

Layout ColumnOptions::LayoutFor(std::string_view head) const {
  const std::optional<Layout> found = Sniff(head);
  const bool needsLook = delimiter.empty() || headerRow == 0;
  if (!found && needsLook) {
    throw Failure(ExitCode::kRefused,
                  file + (head.empty() ? " is empty"
                                       : " shows no columns of numbers; say --delimiter and --header-row"));
  }
  Layout layout = found.value_or(Layout{});
  if (!delimiter.empty()) layout.delimiter = DelimiterNamed(delimiter);
  if (headerRow > 0) {
    layout.headerRow = headerRow;
    if (layout.firstValueRow <= headerRow || !found) layout.firstValueRow = headerRow + 1;
  }
  if (firstValueRow > 0) layout.firstValueRow = firstValueRow;
  return layout;
}

Bounds ColumnOptions::RowRange(const ColumnTable& table) const {
  const std::int32_t last = table.Rows();
  if (rows.empty()) return {0, last - 1};
  const std::size_t colon = rows.find(':');
  const auto bound = [](const std::string& text, std::int32_t otherwise) {
    return text.empty() ? otherwise : NumberArgument(text);
  };
  const double from = bound(rows.substr(0, colon), 1);
  const double to = colon == std::string::npos ? from : bound(rows.substr(colon + 1), last);
  const bool areWhole = from == std::floor(from) && to == std::floor(to);
  if (!areWhole || from < 1 || to > last || from > to) {
    throw Failure(ExitCode::kUsage, "there are no rows " + rows + "; the rows are 1:" + std::to_string(last));
  }
  return {static_cast<std::int32_t>(from) - 1, static_cast<std::int32_t>(to) - 1};
}

std::vector<double> ColumnOptions::Values(const ColumnTable& table, std::int32_t column) const {
  const Bounds range = RowRange(table);
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(range.Count()));
  for (std::int32_t row = range.lower; row <= range.upper; ++row) values.push_back(table.Cell(column, row));
  return values;
}

}  // namespace vorquill21::tool
