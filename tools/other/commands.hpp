#pragma once

#include "program/arguments.hpp"

namespace vorquill21::tool {

// The commands that belong to no kind of file.
void AddCrc32(CLI::App& app, Work& chosen);
void AddSelftest(CLI::App& app, Work& chosen);
void AddSample(CLI::App& app, Work& chosen);

/// These two describe the whole of `app`.
void AddCompletion(CLI::App& app, Work& chosen);
void AddManual(CLI::App& app, Work& chosen);

}  // namespace vorquill21::tool
