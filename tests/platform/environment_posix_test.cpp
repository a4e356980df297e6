#include <gtest/gtest.h>
#include <stdlib.h>

#include <memory>

#include "tests/support/temporary_folder.hpp"

/// The C library never frees the parts of LOCPATH, which the tests of the locale set.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:argz_add_sep\n";
}

namespace vorquill21 {
namespace {

/// No test of this program touches the settings or the desktop of the user who runs it.
class IsolatedUser : public ::testing::Environment {
 public:
  void SetUp() override {
    folder_ = std::make_unique<test::TemporaryFolder>();
    ::setenv("XDG_CONFIG_HOME", folder_->Path().c_str(), 1);
    ::unsetenv("DISPLAY");
    ::unsetenv("WAYLAND_DISPLAY");
  }
  void TearDown() override { folder_.reset(); }

 private:
  std::unique_ptr<test::TemporaryFolder> folder_;
};

[[maybe_unused]] const auto* const kIsolatedUser = ::testing::AddGlobalTestEnvironment(new IsolatedUser);

}  // namespace
}  // namespace vorquill21
