#include "vorquill21/frame/support.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::test {
namespace {

constexpr TextView kReferenceFile = u"\\self test\\3d ref.txt";

/// A fake platform whose library folder holds what an installation puts there.
struct InstalledLibrary : FakePlatform {
  InstalledLibrary() {
    Platform& native = Platform::Native();
    const Text reference = native.GetProcess().LibraryFolder().append(kReferenceFile);
    files.MakeFolder(process.libraryFolder + u"\\self test");
    files.Replace(Text(process.libraryFolder).append(kReferenceFile),
                  ReadWholeFile(native.GetFiles(), reference));
  }
};

/// Refuses whatever would change a file or a folder.
class ReadOnlyFiles : public MemoryFiles {
 public:
  void Replace(TextView, std::string_view) override { throw LibraryError(kPermissionDenied); }
  void Append(TextView, std::string_view) override { throw LibraryError(kPermissionDenied); }
  void MakeFolder(TextView) override { throw LibraryError(kPathFileAccess); }
};

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
  Platform platform(files, fake.desktop, fake.locale, fake.process, fake.settings);
  FailedTests failedTests{u"from an earlier run"};
  EXPECT_FALSE(MSupport::RunAllSelfTests(platform, failedTests));
  EXPECT_EQ(failedTests,
            FailedTests({u"ListFilesMathchingType", u"", u"SelfTest_DirMake", u"SelfTest_Main",
                         u"SelfTest_ReadWrite", u"SelfTest_IsCompatibleVersion", u"SelfTest_3dTable"}));
  EXPECT_EQ(fake.desktop.beeps, 1);
}

}  // namespace
}  // namespace vorquill21::test
