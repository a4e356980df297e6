#include <gtest/gtest.h>
#include <windows.h>

#include <random>
#include <string>

namespace vorquill21 {
namespace {

/// No test of this program touches the settings of the user who runs it: a key that is removed in the end
/// stands in place of the user's part of the registry.
class IsolatedUser : public ::testing::Environment {
 public:
  void SetUp() override {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, name_.c_str(), &key), ERROR_SUCCESS);
    EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, key), ERROR_SUCCESS);
    RegCloseKey(key);
  }
  void TearDown() override {
    EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str()), ERROR_SUCCESS);
  }

 private:
  std::wstring name_ = L"Software\\Vorquill21 tests " + std::to_wstring(std::random_device()());
};

[[maybe_unused]] const auto* const kIsolatedUser = ::testing::AddGlobalTestEnvironment(new IsolatedUser);

}  // namespace
}  // namespace vorquill21
