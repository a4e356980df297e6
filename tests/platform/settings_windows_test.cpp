#include "vorquill21/platform/settings_windows.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <random>
#include <string>

#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

class WindowsSettingsTest : public ::testing::Test {
 protected:
  WindowsSettingsTest()
      : application_(u"Vorquill21 test " + FromUtf8(std::to_string(std::random_device()()))) {}
  ~WindowsSettingsTest() override { RegDeleteTreeW(HKEY_CURRENT_USER, KeyPath(u"").c_str()); }

  std::wstring KeyPath(TextView section) const {
    std::wstring path = L"Software\\" + std::wstring(application_.begin(), application_.end());
    if (!section.empty()) path += L'\\';
    return path.append(section.begin(), section.end());
  }

  Text Get(TextView section, TextView key) const {
    return settings_.Get(application_, section, key, u"default");
  }
  void Set(TextView section, TextView key, TextView value) {
    settings_.Set(application_, section, key, value);
  }

  const Text application_;
  WindowsSettings settings_;
};

TEST_F(WindowsSettingsTest, AValueStandsInTheRegistryOfTheUser) {
  Set(u"Import Settings", u"HeaderRow", u"9");
  wchar_t value[8] = {};
  DWORD size = sizeof value;
  EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, KeyPath(u"Import Settings").c_str(), L"HeaderRow", RRF_RT_REG_SZ,
                         nullptr, value, &size),
            ERROR_SUCCESS);
  EXPECT_EQ(std::wstring(value), L"9");
}

TEST_F(WindowsSettingsTest, AnyTextSurvives) {
  const Text texts[] = {
      u"",       u"\t",         u"a\r\nb",  Text(u"a\0b\0", 4), u"\xD800", u"\u6570\U0001F600",
      u" a=[b]", u"\\ \" % ; ", Text(3, 0), Text(5000, u'x')};
  for (const Text& text : texts) {
    Set(u"section", u"key", text);
    EXPECT_EQ(Get(u"section", u"key"), text);
  }
}

TEST_F(WindowsSettingsTest, AMissingValueIsTheDefault) {
  EXPECT_EQ(Get(u"section", u"key"), u"default");
  Set(u"section", u"key", u"value");
  EXPECT_EQ(Get(u"section", u"other"), u"default");
  EXPECT_EQ(Get(u"other", u"key"), u"default");
}

TEST_F(WindowsSettingsTest, AValueThatIsNoTextIsTheDefault) {
  Set(u"section", u"key", u"value");
  const DWORD number = 9;
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, KeyPath(u"section").c_str(), L"key", REG_DWORD, &number,
                            sizeof number),
            ERROR_SUCCESS);
  EXPECT_EQ(Get(u"section", u"key"), u"default");
}

TEST_F(WindowsSettingsTest, AValueStoredWithoutItsNulIsRead) {
  Set(u"section", u"key", u"value");
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, KeyPath(u"section").c_str(), L"key", REG_SZ, L"abc",
                            3 * sizeof(wchar_t)),
            ERROR_SUCCESS);
  EXPECT_EQ(Get(u"section", u"key"), u"abc");
}

TEST_F(WindowsSettingsTest, NamesMatchIgnoringCase) {
  Set(u"Section", u"Key", u"value");
  EXPECT_EQ(Get(u"SECTION", u"kEY"), u"value");
}

TEST_F(WindowsSettingsTest, NamesThatLookLikePathsStayApart) {
  const Text names[] = {u"a\\b", u"a", u"a%5Cb", u"a%b", u"%", u""};
  for (const Text& name : names) Set(name, name, u"of " + name);
  for (const Text& name : names) EXPECT_EQ(Get(name, name), u"of " + name) << ToUtf8(name);
  settings_.Set(application_ + u"\\a", u"b", u"key", u"deep");
  EXPECT_EQ(Get(u"a\\b", u"key"), u"default");
  std::wstring deep = KeyPath(u"") + L"%5Ca";
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, deep.c_str()), ERROR_SUCCESS);
}

TEST_F(WindowsSettingsTest, ANulInANameIsRefused) {
  const TextView name(u"a\0b", 3);
  Set(u"a", u"a", u"kept");
  EXPECT_EQ(Get(name, u"a"), u"default");
  EXPECT_EQ(Get(u"a", name), u"default");
  for (const auto& [section, key] : {std::pair{name, TextView(u"a")}, std::pair{TextView(u"a"), name}}) {
    EXPECT_EQ(test::RaisedNumber([&] { Set(section, key, u"lost"); }), kInvalidProcedureCall);
  }
  EXPECT_EQ(Get(u"a", u"a"), u"kept");
}

TEST_F(WindowsSettingsTest, AStoreThatCannotBeWrittenRaises) {
  // No key may have so long a name.
  const std::int32_t number = test::RaisedNumber([&] { Set(Text(300, u'x'), u"key", u"value"); });
  EXPECT_NE(number, 0);
  EXPECT_NE(RuntimeErrorDescription(number), RuntimeErrorDescription(0)) << number;
}

}  // namespace
}  // namespace vorquill21
