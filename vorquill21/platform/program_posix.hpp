#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vorquill21 {

/// Runs a program found on the PATH, waits for its end and returns its exit code: 128 and the signal's number
/// when a signal ended it, 0 when the host ignores its children so that nobody can tell. Nothing when it
/// could not be started. The first argument is its name. No shell is involved: every argument arrives as it
/// is, up to its first NUL. Standard input is empty; standard output comes back in `output`, which takes
/// until every process that inherited it has closed it, or is thrown away.
std::optional<int> RunProgram(const std::vector<std::string>& arguments, std::string* output = nullptr);

}  // namespace vorquill21
