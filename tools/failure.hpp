#pragma once

#include <exception>
#include <string>
#include <utility>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {

/// What a run comes to. The numbers are a promise to scripts.
enum class ExitCode : int {
  kGood = 0,
  kFindings = 1,     ///< done, and something was found that should be looked at
  kUsage = 2,        ///< the command line makes no sense
  kInputOutput = 3,  ///< a file, folder or stream could not be read or written
  kRefused = 4,      ///< the library, or a safeguard of the program, refused
};

/// Ends a run: its exit code, and the reason for the user. Nothing was changed then.
class Failure : public std::exception {
 public:
  Failure(ExitCode code, std::string message) : code_(code), message_(std::move(message)) {}

  ExitCode Code() const noexcept { return code_; }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  ExitCode code_;
  std::string message_;
};

/// kInputOutput for the errors of files and devices, otherwise kRefused.
ExitCode ExitCodeOf(const LibraryError& error) noexcept;

/// The failure that `error` means for what was to be done, such as "cannot read tyre.txt".
Failure FailureOf(const std::string& what, const LibraryError& error);

}  // namespace vorquill21::tool
