// The entries of the self-tests are replaced here by some that tell of their calls.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/frame/support.hpp"
#include "vorquill21/vorquill21.hpp"

namespace vorquill21 {
namespace test {
namespace {

/// What each entry does, called with the name of its class.
std::function<void(TextView name, FailedTests& failedTests)> atEntry = [](TextView, FailedTests&) {};

/// What an entry does with the platform that its object was made with.
std::function<void(Platform& platform)> withPlatform = [](Platform&) {};

void Enter(TextView name, FailedTests& failedTests, Platform& platform) {
  atEntry(name, failedTests);
  withPlatform(platform);
}

}  // namespace
}  // namespace test

void CStatistics::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CStatistics", failedTests, platform_);
}

void CTrigonometry::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CTrigonometry", failedTests, platform_);
}

void CMathUtils::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CMathUtils", failedTests, platform_);
}

void CGeometry::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CGeometry", failedTests, platform_);
}

void CInterpolate::SelfTest_Main(FailedTests& failedTests) const {
  test::atEntry(u"CInterpolate", failedTests);  // it keeps no platform
}

void CFile::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CFile", failedTests, platform_);
}

Variant CString::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CString", failedTests, platform_);
  return {};
}

void CLog::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CLog", failedTests, platform_);
}

void CFileStream::SelfTest_Main(FailedTests& failedTests) const {
  test::Enter(u"CFileStream", failedTests, platform_);
}

namespace test {
namespace {

const FailedTests kClasses{u"CStatistics", u"CTrigonometry", u"CMathUtils", u"CGeometry",  u"CInterpolate",
                           u"CFile",       u"CString",       u"CLog",       u"CFileStream"};

class SelfTestRunnerTest : public testing::Test {
 protected:
  void TearDown() override {
    atEntry = [](TextView, FailedTests&) {};
    withPlatform = [](Platform&) {};
  }

  bool Run() { return MSupport::RunAllSelfTests(fake.platform, failedTests); }

  FakePlatform fake;
  FailedTests failedTests;
};

TEST_F(SelfTestRunnerTest, TheEntryOfEachClassIsCalledOnceAndInOrder) {
  FailedTests called;
  atEntry = [&](TextView name, FailedTests&) { called.emplace_back(name); };
  EXPECT_TRUE(Run());
  EXPECT_EQ(called, kClasses);
  EXPECT_EQ(fake.desktop.beeps, 0);
}

TEST_F(SelfTestRunnerTest, TheListHoldsWhatTheEntriesAddToItAlone) {
  failedTests = {u"from an earlier run"};
  atEntry = [](TextView name, FailedTests& list) { list.emplace_back(name); };
  EXPECT_FALSE(Run());
  EXPECT_EQ(failedTests, kClasses);
  EXPECT_EQ(fake.desktop.beeps, 1);
}

TEST_F(SelfTestRunnerTest, OneFailureIsAFailure) {
  for (const Text& failing : kClasses) {
    fake.desktop.beeps = 0;
    atEntry = [&](TextView name, FailedTests& list) {
      if (name == failing) list.emplace_back(u"");
    };
    EXPECT_FALSE(Run()) << ToUtf8(failing);
    EXPECT_EQ(failedTests, FailedTests{u""});
    EXPECT_EQ(fake.desktop.beeps, 1);
  }
}

TEST_F(SelfTestRunnerTest, EntriesWorkOnThePlatformButForItsMessageBoxes) {
  fake.desktop.browsedFolder = u"/picked";
  fake.desktop.specialFolders[eSpecialFolder_PERSONAL] = u"/documents";
  int entries = 0;
  withPlatform = [&](Platform& platform) {
    ++entries;
    EXPECT_EQ(&platform.GetFiles(), &fake.files);
    EXPECT_EQ(&platform.GetLocale(), &fake.locale);
    EXPECT_EQ(&platform.GetProcess(), &fake.process);
    EXPECT_EQ(&platform.GetSettings(), &fake.settings);

    Desktop& desktop = platform.GetDesktop();
    desktop.ShowMessage(u"a message", kExclamation, u"a title");
    desktop.Beep();
    DocumentRequest request;
    request.document = u"a document";
    EXPECT_EQ(desktop.OpenDocument(request), 33);
    EXPECT_EQ(desktop.BrowseForFolder(7, u"Pick one"), u"/picked");
    Text path;
    EXPECT_EQ(desktop.SpecialFolder(eSpecialFolder_PERSONAL, path), 0);
    EXPECT_EQ(path, u"/documents");
  };
  EXPECT_TRUE(Run());
  EXPECT_EQ(entries, 8);
  EXPECT_TRUE(fake.desktop.messages.empty());
  EXPECT_EQ(fake.desktop.beeps, 8);
  ASSERT_EQ(fake.desktop.openedDocuments.size(), 8u);
  EXPECT_EQ(fake.desktop.openedDocuments.back().document, u"a document");
  EXPECT_EQ(fake.desktop.browseTitles, std::vector<Text>(8, u"Pick one"));
  EXPECT_EQ(fake.desktop.browseOwners, std::vector<std::int32_t>(8, 7));
}

}  // namespace
}  // namespace test
}  // namespace vorquill21
