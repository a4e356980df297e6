#include "columns/commands.hpp"

namespace vorquill21::tool {

void AddColumnCommands(CLI::App& app, Work& chosen) {
  AddImport(app, chosen);
  AddSniff(app, chosen);
  AddStats(app, chosen);
  AddInterp(app, chosen);
  AddFit(app, chosen);
}

}  // namespace vorquill21::tool
