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

/// The table of a data file that a command shows.
struct TableOptions {
  std::string file;
  std::string name;
  std::int32_t page = 0;  ///< 0: all

  void Declare(CLI::App& command);

  /// The pages that are wanted. Fails when there is no such table or page, or it cannot be read.
  std::vector<TablePage> Load(Session& session) const;
};

}  // namespace vorquill21::tool
