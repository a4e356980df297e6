#include "vorquill21/platform/process_windows.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "tests/platform/file_folder_windows.hpp"

namespace vorquill21 {
namespace {

struct Case {
  TextView commandLine;
  TextView arguments;
};

TEST(WindowsProcessTest, TheArgumentsAreTheRestOfTheCommandLineAsItStands) {
  constexpr Case kCases[] = {
      {u"", u""},
      {u"host.exe", u""},
      {u"host.exe ", u""},
      {u"host.exe /a  /b ", u"/a  /b "},
      {u"host.exe\t/a\t/b", u"/a\t/b"},
      {u"\"C:\\my programs\\host.exe\" /a \"b c\"", u"/a \"b c\""},
      {u"\"C:\\my programs\\host.exe\"   /a", u"/a"},
      {u"\"C:\\my programs\"\\host.exe /a", u"/a"},
      {u"\"C:\\my programs\\host.exe", u""},
      {u"host.exe \"\" x", u"\"\" x"},
  };
  for (const Case& each : kCases) {
    EXPECT_EQ(ArgumentPart(each.commandLine), each.arguments) << ToUtf8(each.commandLine);
  }
}

TEST(WindowsProcessTest, TheCommandLineOfThisProcessEndsWithItsArguments) {
  const std::wstring wide = GetCommandLineW();
  const Text whole(wide.begin(), wide.end());
  const Text arguments = WindowsProcess().CommandLine();
  EXPECT_TRUE(whole.ends_with(arguments));
  EXPECT_EQ(arguments.find(u"test_platform.exe"), Text::npos);
  EXPECT_LT(arguments.size(), whole.size());
}

TEST(WindowsProcessTest, TheClockTellsTheLocalTimeOfDay) {
  const auto secondsOfSystem = [] {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return now.wHour * 3600.0 + now.wMinute * 60.0 + now.wSecond;
  };
  const WindowsProcess process;
  const double before = secondsOfSystem();
  const double seconds = process.SecondsSinceMidnight();
  const double after = secondsOfSystem() + 1;
  EXPECT_GE(seconds, 0);
  EXPECT_LT(seconds, 86400);
  if (after > before) {  // not over midnight
    EXPECT_GE(seconds, before);
    EXPECT_LE(seconds, after);
  }
}

TEST(WindowsProcessTest, TheClockHasFractions) {
  const WindowsProcess process;
  bool hasFraction = false;
  for (int i = 0; i < 5 && !hasFraction; ++i) {
    const double seconds = process.SecondsSinceMidnight();
    hasFraction = seconds != static_cast<int>(seconds);
    Sleep(3);
  }
  EXPECT_TRUE(hasFraction);
}

TEST(WindowsProcessTest, TheLibraryFolderHoldsThisProgram) {
  const Text folder = WindowsProcess().LibraryFolder();
  ASSERT_FALSE(folder.empty());
  EXPECT_NE(folder.back(), u'\\');
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(folder) / "test_platform.exe")) << ToUtf8(folder);
}

TEST(WindowsProcessTest, TheEnvironmentMayNameAnotherLibraryFolder) {
  constexpr wchar_t kName[] = L"VORQUILL21_LIBRARY_FOLDER";
  const WindowsProcess process;
  const Text own = process.LibraryFolder();
  struct Case {
    std::wstring value;
    Text folder;
  };
  const std::wstring tooLongForAPath(1'000, L'x');
  const Case cases[] = {{L"C:\\my tests", u"C:\\my tests"},
                        {L"C:\\\x0416\\\\", u"C:\\\u0416"},
                        {L"C:\\", u"C:"},
                        {tooLongForAPath, Text(1'000, u'x')},
                        {L"", own}};
  for (const Case& each : cases) {
    SetEnvironmentVariableW(kName, each.value.c_str());
    EXPECT_EQ(process.LibraryFolder(), each.folder) << ToUtf8(each.folder);
  }
  SetEnvironmentVariableW(kName, nullptr);
  EXPECT_EQ(process.LibraryFolder(), own);
}

}  // namespace
}  // namespace vorquill21
