#include "vorquill21/frame/support.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/frame/installed_library.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/names_in.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::test {
namespace {

/// What fails where no file can be written, in the order of the classes.
const FailedTests kNeedingFiles{u"ListFilesMathchingType", u"",
                                u"SelfTest_DirMake",       u"SelfTest_Main",
                                u"SelfTest_ReadWrite",     u"SelfTest_IsCompatibleVersion",
                                u"SelfTest_3dTable"};

class SelfTestsTest : public testing::TestWithParam<char16_t> {};

TEST_P(SelfTestsTest, AllPassInAnInstalledLibrary) {
  InstalledLibrary library;
  library.locale.decimalSeparator = GetParam();
  FailedTests failedTests;
  EXPECT_TRUE(MSupport::RunAllSelfTests(library.platform, failedTests));
  EXPECT_EQ(failedTests, FailedTests());
  EXPECT_EQ(library.desktop.beeps, 0);
  EXPECT_EQ(library.desktop.messages, std::vector<ShownMessage>());
  EXPECT_EQ(library.files.OpenReaders(), 0);
}

INSTANTIATE_TEST_SUITE_P(Decimal, SelfTestsTest, testing::Values(u'.', u','),
                         [](const auto& info) { return info.param == u'.' ? "Point" : "Comma"; });

TEST(SelfTestsTest, AllPassOnTheRealPlatform) {
  Platform& native = Platform::Native();
  RecordingDesktop desktop;
  Platform platform(native.GetFiles(), desktop, native.GetLocale(), native.GetProcess(),
                    native.GetSettings());
  FailedTests failedTests;
  EXPECT_TRUE(MSupport::RunAllSelfTests(platform, failedTests));
  EXPECT_EQ(failedTests, FailedTests());
  EXPECT_EQ(desktop.beeps, 0);
  const Text folder = native.GetProcess().LibraryFolder().append(u"\\self test");
  EXPECT_EQ(NamesIn(native.GetFiles(), folder), (std::vector<Text>{u"3d ref.txt", u"3d try.txt"}));
}

TEST(SelfTestsTest, TheCopyOfTheReferenceFileIsAllThatTheyLeave) {
  InstalledLibrary library;
  for (int run = 0; run < 2; ++run) {
    FailedTests failedTests;
    EXPECT_TRUE(MSupport::RunAllSelfTests(library.platform, failedTests));
    EXPECT_EQ(NamesIn(library.files, u"/library"), std::vector<Text>{u"self test"});
    EXPECT_EQ(NamesIn(library.files, u"/library/self test"),
              (std::vector<Text>{u"3d ref.txt", u"3d try.txt"}));
  }
}

TEST(SelfTestsTest, MissingReferenceFileFailsOneCheckAndBeepsOnce) {
  FakePlatform fake;
  FailedTests failedTests;
  EXPECT_FALSE(MSupport::RunAllSelfTests(fake.platform, failedTests));
  EXPECT_EQ(failedTests, FailedTests({u"SelfTest_3dTable"}));
  EXPECT_EQ(fake.desktop.beeps, 1);
}

TEST(SelfTestsTest, ChecksThatFailAreListedInTheOrderOfTheClasses) {
  ReadOnlyFiles files;
  FakePlatform fake;
  Platform platform = fake.With(files);
  FailedTests failedTests{u"from an earlier run"};
  EXPECT_FALSE(MSupport::RunAllSelfTests(platform, failedTests));
  EXPECT_EQ(failedTests, kNeedingFiles);
  EXPECT_EQ(fake.desktop.beeps, 1);
}

TEST(SelfTestsTest, AHostMayNameAnotherFolder) {
  InstalledLibrary library;
  library.files.MakeFolder(u"/home");
  library.Install(u"/home");
  FixedProcess process;
  process.libraryFolder = u"/home";
  Platform platform = library.With(process);
  FailedTests failedTests;
  EXPECT_TRUE(MSupport::RunAllSelfTests(platform, failedTests));
  EXPECT_EQ(NamesIn(library.files, u"/library/self test"), std::vector<Text>{u"3d ref.txt"});
}

TEST(SelfTestsTest, EveryFaultFailsChecksThatNeedFilesOrDoesNoHarm) {
  int raised = 0;
  const int faults = ForEachFault(kDeviceInputOutput, [&](FaultPlan& plan) {
    InstalledLibrary library;
    FaultyPlatform faulty(library.platform, plan);
    FailedTests failedTests;
    try {
      const bool passed = MSupport::RunAllSelfTests(faulty.platform, failedTests);
      EXPECT_EQ(passed, failedTests.empty());
      EXPECT_EQ(library.desktop.beeps, passed ? 0 : 1);
      for (const Text& name : failedTests) {
        EXPECT_NE(std::ranges::find(kNeedingFiles, name), kNeedingFiles.end()) << ToUtf8(name);
      }
    } catch (const LibraryError& error) {
      EXPECT_EQ(error.Number(), kDeviceInputOutput);
      EXPECT_TRUE(library.files.FileIsThere(u"/library/self test/test log.txt"));
      ++raised;
    }
    EXPECT_EQ(library.files.OpenReaders(), 0);
    EXPECT_TRUE(library.desktop.messages.empty());
  });
  EXPECT_GT(faults, 40);
  EXPECT_EQ(raised, 1) << "the log's file could not be deleted";
}

}  // namespace
}  // namespace vorquill21::test
