#pragma once

#include <string>
#include <vector>

#include "data_file/data_file.hpp"
#include "program/arguments.hpp"

namespace vorquill21::tool {

/// One page of a table, or a table without pages (number 0).
struct TablePage {
  std::int32_t number = 0;
  BoundedArray<double> cells;
};

/// The argument that names a table.
void DeclareTable(CLI::App& command, std::string& name);

/// The option that chooses one page; without it there are all.
void DeclarePage(CLI::App& command, std::int32_t& page);

/// The pages of a table; `onlyPage` chooses one, 0 all. Fails when there is no such table or page, or it
/// cannot be read.
std::vector<TablePage> PagesOf(DataFile& data, const std::string& name, std::int32_t onlyPage);

}  // namespace vorquill21::tool
