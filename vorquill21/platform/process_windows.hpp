#pragma once

#include "vorquill21/platform/process.hpp"

namespace vorquill21 {

/// What follows the program's own name on a command line, as it stands. The name ends at the first blank or
/// tab outside double quotes; white space behind it belongs to neither part.
TextView ArgumentPart(TextView commandLine) noexcept;

class WindowsProcess : public Process {
 public:
  Text CommandLine() const override;
  double SecondsSinceMidnight() const override;
  Text LibraryFolder() const override;
};

}  // namespace vorquill21
