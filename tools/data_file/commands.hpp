#pragma once

#include "program/arguments.hpp"

namespace vorquill21::tool {

// The commands for data files.
void AddInfo(CLI::App& app, Work& chosen);
void AddLs(CLI::App& app, Work& chosen);
void AddGet(CLI::App& app, Work& chosen);
void AddSet(CLI::App& app, Work& chosen);
void AddTable(CLI::App& app, Work& chosen);
void AddDiff(CLI::App& app, Work& chosen);
void AddLint(CLI::App& app, Work& chosen);

}  // namespace vorquill21::tool
