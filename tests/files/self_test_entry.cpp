#include "tests/files/self_test_entry.hpp"

namespace vorquill21::test {
namespace {

/// An explicit instantiation may name a private member, and so hand it to a friend.
template <auto kEntry>
struct Opened {
  friend void CallEntry(const CFile& file, FailedTests& failedTests) { (file.*kEntry)(failedTests); }
};
template struct Opened<&CFile::SelfTest_Main>;
void CallEntry(const CFile& file, FailedTests& failedTests);

}  // namespace

void RunSelfTest(const CFile& file, FailedTests& failedTests) {
  CallEntry(file, failedTests);
}

}  // namespace vorquill21::test
