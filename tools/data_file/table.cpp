#include <algorithm>
#include <array>

#include "data_file/cell_text.hpp"
#include "data_file/commands.hpp"
#include "data_file/data_file.hpp"
#include "data_file/pages.hpp"

namespace vorquill21::tool {
namespace {

void DescribeTable(Result& result, const std::string& name, const std::vector<TablePage>& pages) {
  result.Add("name", "", name);
  result.Add("rows", "", pages.front().cells.UpperBound(1) + 1);
  result.Add("columns", "", pages.front().cells.UpperBound(2) + 1);
}

struct TableShowCommand {
  TableOptions options;

  void Declare(CLI::App& command) { options.Declare(command); }

  ExitCode Run(Session& session, Result& result) const {
    const std::vector<TablePage> pages = options.Load(session);
    DescribeTable(result, options.name, pages);
    std::vector<Result::Page> shown;
    for (const TablePage& table : pages) shown.push_back({table.number, RowsOf(table.cells)});
    result.AddPages("pages", std::move(shown));
    return ExitCode::kGood;
  }

 private:
  static std::vector<Result::Row> RowsOf(const BoundedArray<double>& cells) {
    std::vector<Result::Row> rows;
    for (std::int32_t row = 0; row <= cells.UpperBound(1); ++row) {
      Result::Row& values = rows.emplace_back();
      for (std::int32_t column = 0; column <= cells.UpperBound(2); ++column)
        values.emplace_back(cells(row, column));
    }
    return rows;
  }
};

struct TableExportCommand {
  TableOptions options;
  std::string delimiter = "comma";
  std::string output = "-";

  void Declare(CLI::App& command) {
    options.Declare(command);
    command
        .add_option("-d,--delimiter", delimiter,
                    "Between cells: tab, comma, semicolon, blank, bar or any text")
        ->capture_default_str()
        ->type_name("TEXT");
    command.add_option("-o,--output", output, "Where to write; \"-\" is standard output")
        ->capture_default_str()
        ->type_name("FILE");
  }

  ExitCode Run(Session& session, Result& result) const {
    const std::vector<TablePage> pages = options.Load(session);
    session.WriteFile(output, DelimitedText(pages));
    if (output == "-") result.Silence();
    DescribeTable(result, options.name, pages);
    result.Add("pages", "", pages.size());
    result.Add("file", "", output);
    return ExitCode::kGood;
  }

 private:
  std::string DelimitedText(const std::vector<TablePage>& pages) const {
    const std::string between = DelimiterNamed(delimiter);
    std::string text;
    for (const TablePage& table : pages) {
      if (!text.empty()) text += '\n';
      for (std::int32_t row = 0; row <= table.cells.UpperBound(1); ++row) {
        for (std::int32_t column = 0; column <= table.cells.UpperBound(2); ++column) {
          if (column > 0) text += between;
          text += ToUtf8(NumberToText(table.cells(row, column), u'.'));
        }
        text += '\n';
      }
    }
    return text;
  }
};

/// Rows of numbers from delimited text; an empty line begins a page.
class CellReader {
 public:
  CellReader(std::string delimiter, char decimalSeparator)
      : delimiter_(std::move(delimiter)), decimalSeparator_(decimalSeparator) {}

  using Rows = std::vector<std::vector<double>>;

  std::vector<Rows> Read(std::string_view text, Result& result) {
    std::vector<Rows> pages(1);
    while (!text.empty()) {
      ++line_;
      const std::size_t end = std::min(text.find('\n'), text.size());
      std::string_view row = text.substr(0, end);
      text.remove_prefix(std::min(end + 1, text.size()));
      if (row.ends_with('\r')) row.remove_suffix(1);
      if (!row.empty()) {
        pages.back().push_back(ReadRow(row, result));
        RequireSameWidth(pages.front(), pages.back());
      } else if (!pages.back().empty()) {
        pages.emplace_back();
      }
    }
    if (pages.back().empty()) pages.pop_back();
    return pages;
  }

 private:
  std::vector<double> ReadRow(std::string_view row, Result& result) {
    std::vector<double> cells;
    for (bool goesOn = true; goesOn;) {
      const std::size_t end = row.find(Delimiter(row));
      cells.push_back(ReadCell(row.substr(0, end), cells.size() + 1, result));
      goesOn = end != std::string_view::npos;
      if (goesOn) row.remove_prefix(end + delimiter_.size());
    }
    return cells;
  }

  /// What the user named, or the first usual delimiter in the first row.
  const std::string& Delimiter(std::string_view row) {
    constexpr std::array<const char*, 5> kUsual{"\t", ";", ",", "|", " "};
    if (!delimiter_.empty()) return delimiter_;
    delimiter_ = "\t";
    for (const char* const usual : kUsual) {
      if (row.find(usual) == std::string_view::npos) continue;
      delimiter_ = usual;
      break;
    }
    return delimiter_;
  }

  double ReadCell(std::string_view cell, std::size_t column, Result& result) const {
    const auto number = TextToNumber(cell, decimalSeparator_);
    const std::string where = "line " + std::to_string(line_) + ", cell " + std::to_string(column) + ": ";
    if (!number) throw Failure(ExitCode::kRefused, where + "\"" + std::string(cell) + "\" is no number");
    if (FateOf(*number) == CellFate::kRefused) {
      throw Failure(ExitCode::kRefused, where + std::string(cell) + " is beyond what a table holds");
    }
    if (FateOf(*number) == CellFate::kLost) {
      result.AddFinding({"cell-lost", std::string(cell) + " is written as 0", "", line_});
    }
    return *number;
  }

  void RequireSameWidth(const Rows& first, const Rows& current) const {
    if (current.back().size() == first.front().size()) return;
    throw Failure(ExitCode::kRefused, "line " + std::to_string(line_) + " has " +
                                          std::to_string(current.back().size()) + " cells instead of " +
                                          std::to_string(first.front().size()));
  }

  std::string delimiter_;
  char decimalSeparator_;
  std::int64_t line_ = 0;
};

struct TableImportCommand {
  std::string file;
  std::string name;
  std::string source;
  std::string delimiter;
  bool hasDecimalComma = false;
  std::string output;
  bool isStrict = false;

  void Declare(CLI::App& command) {
    DeclareFile(command, file, "The data file, which is replaced as a whole or stays as it is");
    DeclareTable(command, name);
    command
        .add_option("CELLS", source,
                    "A file of delimited numbers, a line for each row, an empty line between pages; \"-\" is "
                    "standard input")
        ->required()
        ->type_name("");
    command
        .add_option("-d,--delimiter", delimiter,
                    "Between cells: tab, comma, semicolon, blank, bar or any text (found by itself)")
        ->type_name("TEXT");
    command.add_flag("--decimal-comma", hasDecimalComma, "Numbers in the cells have a decimal comma");
    command.add_option("-o,--output", output, "Write here instead; \"-\" is standard output")
        ->type_name("FILE");
    command.add_flag("--strict", isStrict, "Write nothing when there are findings");
  }

  ExitCode Run(Session& session, Result& result) const {
    RequireStorable(session, FromUtf8(name));
    if (file == "-" && source == "-") {
      throw Failure(ExitCode::kUsage, "the data file and the cells cannot both be standard input");
    }
    DataFile data(session, file);
    CellReader reader(DelimiterNamed(delimiter), hasDecimalComma ? ',' : '.');
    const std::vector<CellReader::Rows> pages = reader.Read(session.ReadFile(source), result);
    RequireSameShape(pages);
    result.Add("name", "", name);
    result.Add("rows", "", pages.front().size());
    result.Add("columns", "", pages.front().front().size());
    result.Add("pages", "", pages.size());
    result.ReportFindings();
    const bool isWritten = !isStrict || result.Findings().empty();
    result.Add("written", "", isWritten);
    if (!isWritten) return ExitCode::kFindings;
    data.PrepareForChanges();
    AddTable(session, data, pages);
    const std::string& target = output.empty() ? file : output;
    data.Write(target, FromUtf8(name));
    if (target == "-") result.Silence();
    return ExitCode::kGood;
  }

 private:
  void RequireSameShape(const std::vector<CellReader::Rows>& pages) const {
    if (pages.empty()) throw Failure(ExitCode::kRefused, source + " holds no rows");
    for (const CellReader::Rows& page : pages) {
      if (page.size() != pages.front().size())
        throw Failure(ExitCode::kRefused, "the pages differ in their number of rows");
    }
  }

  void AddTable(Session& session, DataFile& data, const std::vector<CellReader::Rows>& pages) const {
    const auto last = [](std::size_t count) { return static_cast<std::int32_t>(count) - 1; };
    const Bounds rows{0, last(pages.front().size())};
    const Bounds columns{0, last(pages.front().front().size())};
    const Text table = FromUtf8(name);
    bool isAdded;
    if (pages.size() == 1) {
      BoundedArray<double> cells(rows, columns);
      FillPage(pages.front(),
               [&](std::int32_t row, std::int32_t column, double cell) { cells(row, column) = cell; });
      isAdded = data.Stream().AddTable2d(table, cells);
    } else {
      BoundedArray<double> cells(rows, columns, Bounds{0, last(pages.size() + 1)});
      for (std::int32_t page = 1; page <= cells.UpperBound(3); ++page) {
        FillPage(
            pages[static_cast<std::size_t>(page - 1)],
            [&](std::int32_t row, std::int32_t column, double cell) { cells(row, column, page) = cell; });
      }
      isAdded = data.Stream().AddTable3d(table, cells);
      RemoveLaterPages(data, table, cells.UpperBound(3));
    }
    if (!isAdded)
      throw Failure(ExitCode::kRefused, session.GetDesktop().LastMessage("the table was refused"));
  }

  template <typename Put>
  static void FillPage(const CellReader::Rows& page, Put put) {
    for (std::size_t row = 0; row < page.size(); ++row) {
      for (std::size_t column = 0; column < page[row].size(); ++column) {
        put(static_cast<std::int32_t>(row), static_cast<std::int32_t>(column), page[row][column]);
      }
    }
  }

  /// Pages of an older table that had more of them.
  static void RemoveLaterPages(DataFile& data, const Text& table, std::int32_t pages) {
    for (std::int32_t page = pages + 1; data.Stream().RemoveField(table + u" PAGE " + NumberToText(page));)
      ++page;
  }
};

}  // namespace

void AddTable(CLI::App& app, Work& chosen) {
  CLI::App& table = AddGroup(app, "table", "Show, export and import tables of a data file",
                             "table show tyre.txt \"SHAPE FACTOR DATA\"");
  AddCommand<TableShowCommand>(table, chosen, "show", "Print a table, with all pages or one",
                               "table show tyre.txt \"LATERAL FORCE DATA\" --page 2");
  AddCommand<TableExportCommand>(table, chosen, "export", "Write a table as delimited text",
                                 "table export tyre.txt \"LATERAL FORCE DATA\" -o forces.csv");
  AddCommand<TableImportCommand>(table, chosen, "import", "Store a table from delimited text",
                                 "table import tyre.txt \"STIFFNESS DATA\" stiffness.csv");
}

}  // namespace vorquill21::tool
