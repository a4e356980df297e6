#include "data_file/pages.hpp"

#include <algorithm>

namespace vorquill21::tool {
namespace {

TablePage PageOf(const Variant& table, const PageRun& run, std::int32_t number) {
  TablePage page{number, BoundedArray<double>(Bounds{0, run.rows - 1}, Bounds{0, run.columns - 1})};
  for (std::int32_t row = 0; row < run.rows; ++row) {
    for (std::int32_t column = 0; column < run.columns; ++column) {
      page.cells(row, column) = ArrayElement(table, row, column, number).As<double>();
    }
  }
  return page;
}

std::vector<TablePage> PagesOfRun(DataFile& data, const PageRun& run, std::int32_t onlyPage) {
  if (onlyPage > run.pages) {
    throw Failure(ExitCode::kFindings, ToUtf8(run.name) + " has " + std::to_string(run.pages) + " pages");
  }
  const Variant table = data.Stream().GetTable3d(run.name, run.rows - 1, run.columns - 1, run.pages);
  std::vector<TablePage> pages;
  for (std::int32_t number = 1; number <= run.pages; ++number) {
    if (onlyPage == 0 || onlyPage == number) pages.push_back(PageOf(table, run, number));
  }
  return pages;
}

}  // namespace

void DeclareTable(CLI::App& command, std::string& name) {
  command.add_option("NAME", name, "The table, without \" PAGE 1\" when it has pages")
      ->required()
      ->type_name("");
}

void TableOptions::Declare(CLI::App& command) {
  DeclareFile(command, file, "The data file");
  DeclareTable(command, name);
  command.add_option("--page", page, "Only this page, counted from 1")
      ->type_name("N")
      ->check(PositiveNumber());
}

std::vector<TablePage> TableOptions::Load(Session& session) const {
  DataFile data(session, file);
  const std::optional<Field> field = data.Read(name);
  if (field && field->table && page == 0) return {TablePage{0, *field->table}};
  const std::vector<PageRun> runs = data.PageRuns();
  const auto run = std::ranges::find(runs, FromUtf8(name), &PageRun::name);
  if (run != runs.end()) return PagesOfRun(data, *run, page);
  if (!field) throw Failure(ExitCode::kFindings, "there is no table " + name);
  if (field->table) throw Failure(ExitCode::kFindings, name + " has no pages");
  throw Failure(ExitCode::kRefused,
                field->kind == Field::Kind::kBrokenTable
                    ? "the table " + name + " cannot be read; \"vorquill21 lint\" tells why"
                    : name + " is no table");
}

}  // namespace vorquill21::tool
