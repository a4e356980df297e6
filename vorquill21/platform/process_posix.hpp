#pragma once

#include <string_view>

#include "vorquill21/platform/files.hpp"
#include "vorquill21/platform/process.hpp"

namespace vorquill21 {

/// The arguments of a process as one text, made of its argument block (each argument, the program's name
/// first, ends with a NUL).
Text JoinedArguments(std::string_view block);

class PosixProcess : public Process {
 public:
  explicit PosixProcess(Files& files);

  Text CommandLine() const override;
  double SecondsSinceMidnight() const override;
  Text LibraryFolder() const override;

 private:
  Files& files_;
  Text libraryFolder_;  // found at the start: the loader may know a relative path only
};

}  // namespace vorquill21
