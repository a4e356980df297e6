#include "other/commands.hpp"

namespace vorquill21::tool {

void AddOtherCommands(CLI::App& app, Work& chosen) {
  AddCrc32(app, chosen);
  AddSelftest(app, chosen);
  AddSample(app, chosen);
  AddCompletion(app, chosen);
  AddManual(app, chosen);
}

}  // namespace vorquill21::tool
