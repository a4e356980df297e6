#include "vorquill21/text/string_self_test.hpp"

#include "vorquill21/text/string.hpp"

namespace vorquill21 {

Variant CString::SelfTest_Main(FailedTests& aoFailedTests) const {
  TranslatingMemoryErrors([&] { RunStringChecks(*this, aoFailedTests); });
  return {};
}

}  // namespace vorquill21
