#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "tests/files/self_test_entry.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/for_each_shortage.hpp"
#include "tests/support/names_in.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/files/path_self_test.hpp"

namespace vorquill21 {
namespace {

using test::FaultPlan;
using test::ForEachFault;
using test::NamesIn;
using test::RunSelfTest;

constexpr TextView kSelfTestFolder = u"/library/self test";

FailedTests FailuresOn(Platform& platform) {
  FailedTests failedTests;
  RunSelfTest(CFile(platform), failedTests);
  return failedTests;
}

TEST(FileSelfTest, PassesAndLeavesNoFileBehind) {
  test::FakePlatform fake;
  for (int run = 0; run < 2; ++run) {
    EXPECT_TRUE(FailuresOn(fake.platform).empty());
    EXPECT_EQ(NamesIn(fake.files, u"/library"), std::vector<Text>{u"self test"});
    EXPECT_EQ(NamesIn(fake.files, kSelfTestFolder), std::vector<Text>());
  }
  EXPECT_EQ(fake.files.OpenReaders(), 0);
  EXPECT_TRUE(fake.desktop.messages.empty());
  EXPECT_EQ(fake.desktop.beeps, 0);
}

/// Keeps what was written to "delme.txt".
class KeepingFiles : public test::MemoryFiles {
 public:
  void Replace(TextView path, std::string_view bytes) override {
    if (path.ends_with(u"delme.txt")) sample = bytes;
    MemoryFiles::Replace(path, bytes);
  }

  std::string sample;
};

TEST(FileSelfTest, SampleHasThreeLines) {
  test::FakePlatform fake;
  KeepingFiles files;
  files.MakeFolder(u"/library");
  Platform platform = fake.With(files);
  FailuresOn(platform);
  EXPECT_EQ(std::ranges::count(files.sample, '\r'), 3);
  EXPECT_EQ(std::ranges::count(files.sample, '\n'), 3);
}

TEST(FileSelfTest, LeavesOtherFilesOfItsFolderAlone) {
  test::FakePlatform fake;
  fake.files.MakeFolder(kSelfTestFolder);
  fake.files.Replace(u"/library/self test/reference.txt", "kept");
  EXPECT_TRUE(FailuresOn(fake.platform).empty());
  EXPECT_EQ(fake.files.Content(u"/library/self test/reference.txt"), "kept");
}

TEST(FileSelfTest, FailedNamesAreAppended) {
  test::FakePlatform fake;
  fake.files.MakeFolder(kSelfTestFolder);
  fake.files.Replace(u"/library/self test/stray.tt1", "a fourth file");
  FailedTests failedTests{u"before"};
  RunSelfTest(CFile(fake.platform), failedTests);
  EXPECT_EQ(failedTests, (FailedTests{u"before", u"ListFilesMathchingType"}));
}

TEST(FileSelfTest, DeliberateNamesOfTheChecksThatNeedFiles) {
  test::FakePlatform fake;
  fake.process.libraryFolder = u"/missing";
  EXPECT_EQ(FailuresOn(fake.platform), (FailedTests{u"ListFilesMathchingType", u"", u"SelfTest_DirMake"}));
  EXPECT_TRUE(fake.desktop.messages.empty());
}

/// What fails when the 1st, 2nd, ... call fails.
const FailedTests kFailuresByCall[] = {
    {},                           // look for the folder, which is then made
    {u"ListFilesMathchingType"},  // make the folder
    {u"ListFilesMathchingType"},  // write three files
    {u"ListFilesMathchingType"},
    {u"ListFilesMathchingType"},
    {u"ListFilesMathchingType"},  // list them
    {},                           // delete them: ignored
    {},                           // remove the folder: ignored
    {},                           // look for the folder
    {u""},                        // make the folder
    {u""},                        // write the sample
    {u""},                        // look for it
    {u""},                        // open it
    {u""},                        // read it
    {u""},                        // read its end
    {},                           // delete it: ignored
    {},                           // look for the other folder
    {u"SelfTest_DirMake"},        // make it
    {u"SelfTest_DirMake"},        // look whether it was made
    {u"SelfTest_DirMake"},        // remove it
    {},                           // no fault
};

TEST(FileSelfTest, AFaultFailsTheCheckThatItHits) {
  std::size_t run = 0;
  ForEachFault(kDeviceInputOutput, [&](FaultPlan& plan) {
    ASSERT_LT(run, std::size(kFailuresByCall));
    test::FakePlatform fake;
    test::FaultyPlatform faulty(fake.platform, plan);
    EXPECT_EQ(FailuresOn(faulty.platform), kFailuresByCall[run]) << run;
    EXPECT_EQ(fake.files.OpenReaders(), 0);
    EXPECT_TRUE(fake.desktop.messages.empty());
    const bool wasRemoval = run == 19;
    EXPECT_EQ(fake.files.FolderExists(u"/library/DirMakeTest"), wasRemoval) << run;
    ++run;
  });
  EXPECT_EQ(run, std::size(kFailuresByCall));
}

TEST(FileSelfTest, AShortageOfMemoryFailsTheCheckThatItHits) {
  std::vector<Text> names;
  const auto runSelfTest = [&](test::MemoryShortage& shortage) {
    test::FakePlatform fake;
    FailedTests failedTests;
    failedTests.reserve(10);
    shortage.During([&] { RunSelfTest(CFile(fake.platform), failedTests); });
    ASSERT_LE(failedTests.size(), 1u);
    if (!failedTests.empty() && (names.empty() || names.back() != failedTests[0])) {
      names.push_back(failedTests[0]);
    }
  };
  test::ForEachShortage(runSelfTest, {1});
  EXPECT_EQ(names, (std::vector<Text>{u"ListFilesMathchingType", u"", u"SelfTest_DirMake",
                                      u"SelfTest_ParseFileTitle", u"SelfTest_EnsureExtension"}));
}

/// Right answers in capitals but for one, which is wrong.
class PathsWrongOnce {
 public:
  explicit PathsWrongOnce(int call) : call_(call) {}

  Text ParseFileTitle(TextView path) const { return Spoilt(file_.ParseFileTitle(path)); }
  Text EnsureExtension(TextView path, TextView extension) const {
    return Spoilt(file_.EnsureExtension(path, extension));
  }

  int Calls() const { return calls_; }

 private:
  Text Spoilt(const Text& text) const { return ++calls_ == call_ ? text + u"x" : UpperCase(text); }

  test::FakePlatform fake_;
  CFile file_{fake_.platform};
  int call_;
  mutable int calls_ = 0;
};

TEST(PathSelfTest, EveryWrongAnswerFailsTheCheckOfItsOperation) {
  struct Row {
    bool (*passes)(const PathsWrongOnce& paths);
    int calls;
  };
  for (const Row& row : {Row{ParsesFileTitles, 8}, Row{EnsuresExtensions, 5}}) {
    const PathsWrongOnce right(0);
    EXPECT_TRUE(row.passes(right)) << "letter case is ignored";
    EXPECT_EQ(right.Calls(), row.calls);
    for (int call = 1; call <= row.calls; ++call) {
      EXPECT_FALSE(row.passes(PathsWrongOnce(call))) << call;
    }
  }
}

}  // namespace
}  // namespace vorquill21
