#pragma once

#include <sys/types.h>

#include <chrono>
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

/// Starts a program in the same way, its standard output thrown away, and does not wait for its end. Whoever
/// starts it asks for its exit code until there is one.
std::optional<pid_t> StartProgram(const std::vector<std::string>& arguments);

/// The exit code of a program, as RunProgram gives it, or nothing when it still runs after `patience`.
std::optional<int> ExitCodeOf(pid_t process, std::chrono::milliseconds patience);

}  // namespace vorquill21
