#pragma once

#include "program/arguments.hpp"

namespace vorquill21::tool {

// The commands for column files.
void AddImport(CLI::App& app, Work& chosen);
void AddSniff(CLI::App& app, Work& chosen);
void AddStats(CLI::App& app, Work& chosen);
void AddInterp(CLI::App& app, Work& chosen);
void AddFit(CLI::App& app, Work& chosen);

}  // namespace vorquill21::tool
