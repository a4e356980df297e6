#include <algorithm>

#include "columns/column_table.hpp"
#include "columns/commands.hpp"
#include "data_file/cell_text.hpp"

namespace vorquill21::tool {
namespace {

void DescribeLayout(Result& result, const std::string& file, const Layout& layout) {
  result.Add("file", "file", file);
  result.Add("delimiter", "delimiter", DelimiterName(layout.delimiter));
  result.Add("header_row", "header row", layout.headerRow);
  result.Add("first_value_row", "first value row", layout.firstValueRow);
}

struct ImportCommand {
  ColumnOptions options;
  bool isStrict = false;
  std::string output;

  void Declare(CLI::App& command) {
    options.Declare(command);
    command.add_flag("--strict", isStrict, "Exit code 1 when there are findings");
    command
        .add_option(
            "-o,--output", output,
            "Write the values here, delimited by commas below a line of headers; \"-\" is standard output")
        ->type_name("FILE");
  }

  ExitCode Run(Session& session, Result& result) const {
    const ColumnTable table = options.Load(session);
    DescribeLayout(result, options.file, table.UsedLayout());
    result.Add("rows", "rows", table.Rows());
    table.Report().Describe(result);
    result.AddTable("columns",
                    {{"index", "COLUMN"},
                     {"header", "HEADER"},
                     {"first", "FIRST"},
                     {"last", "LAST"},
                     {"minimum", "MINIMUM"},
                     {"maximum", "MAXIMUM"}},
                    Summaries(table));
    if (!output.empty()) session.WriteFile(output, DelimitedText(table));
    if (output == "-") result.Silence();
    return isStrict ? CodeOfFindings(result) : ExitCode::kGood;
  }

 private:
  static std::vector<Result::Row> Summaries(const ColumnTable& table) {
    std::vector<Result::Row> rows;
    for (std::int32_t column = 0; column < table.Columns(); ++column) {
      Result::Row row{column, table.Header(column), Value(), Value(), Value(), Value()};
      if (table.Rows() > 0) {
        double least = table.Cell(column, 0);
        double greatest = least;
        for (std::int32_t i = 1; i < table.Rows(); ++i) {
          const double cell = table.Cell(column, i);
          least = std::min(least, cell);
          greatest = std::max(greatest, cell);
        }
        row = {
            column,  table.Header(column), table.Cell(column, 0), table.Cell(column, table.Rows() - 1), least,
            greatest};
      }
      rows.push_back(std::move(row));
    }
    return rows;
  }

  static std::string DelimitedText(const ColumnTable& table) {
    std::string text;
    for (std::int32_t column = 0; column < table.Columns(); ++column) {
      if (column > 0) text += ',';
      text += table.Header(column);
    }
    text += '\n';
    for (std::int32_t row = 0; row < table.Rows(); ++row) {
      for (std::int32_t column = 0; column < table.Columns(); ++column) {
        if (column > 0) text += ',';
        text += ToUtf8(NumberToText(table.Cell(column, row), u'.'));
      }
      text += '\n';
    }
    return text;
  }
};

struct SniffCommand {
  std::string file;

  void Declare(CLI::App& command) { DeclareFile(command, file, "The column file"); }

  ExitCode Run(Session& session, Result& result) const {
    const ColumnSource source(session, file);
    const std::optional<Layout> layout = Sniff(source.Head());
    result.Add("found", "", layout.has_value());
    result.ReportFindings();
    if (!layout) {
      result.AddFinding({"no-columns", file + " shows no columns of numbers", "", 0});
      return ExitCode::kFindings;
    }
    DescribeLayout(result, file, *layout);
    result.Add("columns", "columns", layout->columns);
    result.Add("has_header", "", layout->hasHeader);
    if (!layout->hasHeader) {
      result.AddFinding(
          {"no-header",
           "no line of texts stands above the values; this line of values would serve as the header", "",
           layout->headerRow});
    }
    return CodeOfFindings(result);
  }
};

}  // namespace

void AddImport(CLI::App& app, Work& chosen) {
  AddCommand<ImportCommand>(app, chosen, "import", "Import a column file and report what became of its lines",
                            "import faulty-columns.txt --strict");
}

void AddSniff(CLI::App& app, Work& chosen) {
  AddCommand<SniffCommand>(app, chosen, "sniff",
                           "Find the delimiter, the header and the first line of values of a column file",
                           "sniff load-cell-calibration.txt");
}

}  // namespace vorquill21::tool
