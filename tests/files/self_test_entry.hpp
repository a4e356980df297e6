#pragma once

#include "vorquill21/files/file.hpp"

namespace vorquill21::test {

/// Calls the private self-test entry of `file`.
void RunSelfTest(const CFile& file, FailedTests& failedTests);

}  // namespace vorquill21::test
