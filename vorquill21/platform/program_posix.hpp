#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vorquill21 {

/// How a program ended.
struct ProgramResult {
  int exitCode = 0;    ///< 128 and the signal's number when a signal ended it; 0 when nobody can tell
  std::string output;  ///< what it wrote to standard output
};

/// Runs a program found on the PATH and waits for its end; nothing when it could not be started. The first
/// argument is its name. No shell is involved: every argument arrives as it is, up to its first NUL. Standard
/// input is empty.
std::optional<ProgramResult> RunProgram(const std::vector<std::string>& arguments);

}  // namespace vorquill21
