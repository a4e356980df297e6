#include "tests/files/self_test_entry.hpp"

#include "tests/support/self_test.hpp"

namespace vorquill21 {

VORQUILL21_OPEN_SELF_TEST(CFile);

namespace test {

void RunSelfTest(const CFile& file, FailedTests& failedTests) {
  CallSelfTest(file, failedTests);
}

}  // namespace test
}  // namespace vorquill21
