#include "data_file/commands.hpp"

#include "program/arguments.hpp"

namespace vorquill21::tool {

void AddDataFileCommands(CLI::App& app, Work& chosen) {
  AddInfo(app, chosen);
  AddLs(app, chosen);
  AddGet(app, chosen);
  AddSet(app, chosen);
  AddTable(app, chosen);
  AddDiff(app, chosen);
  AddLint(app, chosen);
}

}  // namespace vorquill21::tool
