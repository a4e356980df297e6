#include "tests/support/self_test.hpp"

#include <fstream>
#include <iterator>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/faulty_platform.hpp"

namespace vorquill21 {

VORQUILL21_OPEN_SELF_TEST(CFileStream);

namespace {

using test::FaultPlan;
using test::ForEachFault;

FailedTests SelfTestOn(Platform& platform) {
  FailedTests failedTests{u"earlier"};
  CallSelfTest(CFileStream(platform), failedTests);
  EXPECT_EQ(failedTests.front(), u"earlier");
  failedTests.erase(failedTests.begin());
  return failedTests;
}

const std::string& ReferenceFile() {
  static const std::string bytes = [] {
    std::ifstream file(VORQUILL21_REFERENCE_FILE, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }();
  return bytes;
}

void PutReference(test::FakePlatform& fake, const std::string& bytes) {
  if (!fake.files.FolderExists(u"/library/self test")) fake.files.MakeFolder(u"/library/self test");
  fake.files.Replace(u"/library/self test/3d ref.txt", bytes);
}

const FailedTests kAllNames = {u"SelfTest_Main",
                               u"SelfTest_ReadWrite",
                               u"SelfTest_DecSeparators",
                               u"SelfTest_GetFieldNumberMultiple",
                               u"SelfTest_GetFieldStringMultiple",
                               u"SelfTest_IsCompatibleVersion",
                               u"SelfTest_3dTable"};

class CFileStreamSelfTest : public test::WithEachSeparator {
 protected:
  FailedTests Run() { return SelfTestOn(fake.platform); }
};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamSelfTest);

TEST_P(CFileStreamSelfTest, PassesInSilenceBesideTheReferenceFile) {
  PutReference(fake, ReferenceFile());
  EXPECT_EQ(Run(), FailedTests{});
  EXPECT_EQ(Run(), FailedTests{}) << "the second time, too";
  ExpectMessages({});
  EXPECT_EQ(fake.files.OpenReaders(), 0);
}

TEST_P(CFileStreamSelfTest, CopyOfTheReferenceIsWrittenInTheUsersNotation) {
  PutReference(fake, ReferenceFile());
  Run();
  std::string expected = ReferenceFile();
  std::replace(expected.begin(), expected.end(), '.', static_cast<char>(GetParam()));
  const std::string version = "TYRE DATA 2" + ToUtf8(Separator()) + "1";
  expected.replace(expected.find(version), version.size(), "TYRE DATA 2.1");
  EXPECT_EQ(fake.files.Content(u"/library/self test/3d try.txt"), expected);
}

TEST_P(CFileStreamSelfTest, MakesItsFolderAndNamesTheCheckWithoutReference) {
  EXPECT_EQ(Run(), FailedTests{u"SelfTest_3dTable"});
  EXPECT_TRUE(fake.files.FolderExists(u"/library/self test"));
}

TEST_P(CFileStreamSelfTest, LeavesTheFileThatItComparesAlone) {
  PutReference(fake, ReferenceFile());
  fake.files.Replace(u"/library/self test/ITSeparators.tst", "left over");
  Run();
  std::vector<Text> names;
  for (const DirectoryEntry& entry : fake.files.List(u"/library/self test/*")) names.push_back(entry.name);
  EXPECT_EQ(names, (std::vector<Text>{u"3d ref.txt", u"3d try.txt"}));
}

TEST_P(CFileStreamSelfTest, AnyOtherReferenceIsNoticed) {
  const auto changed = [](TextView from, TextView to) {
    std::string bytes = ReferenceFile();
    const std::size_t at = bytes.find(ToUtf8(from));
    EXPECT_NE(at, std::string::npos);
    return bytes.replace(at, from.size(), ToUtf8(to));
  };
  for (const std::string& bytes : {
           std::string(),
           std::string("x"),
           ReferenceFile() + "\r\n",
           changed(u"2985.2", u"2985.20"),
           changed(u"DATA 2.1", u"DATA 2.2"),
           changed(u"COUNT]\t11", u"COUNT]\t10"),
           changed(u"COUNT]\t11", u"COUNT]\t12"),
           changed(u"[SHAPE FACTOR DATA]", u"[shape factor data]"),
           changed(u"PAGE 3", u"PAGE 4"),
       }) {
    PutReference(fake, bytes);
    EXPECT_EQ(Run(), FailedTests{u"SelfTest_3dTable"}) << bytes;
  }
}

TEST_P(CFileStreamSelfTest, LibraryFolderThatIsMissingFailsTheChecksThatNeedFiles) {
  fake.process.libraryFolder = u"/nowhere";
  EXPECT_EQ(Run(), (FailedTests{u"SelfTest_Main", u"SelfTest_ReadWrite", u"SelfTest_IsCompatibleVersion",
                                u"SelfTest_3dTable"}));
}

TEST_P(CFileStreamSelfTest, EveryFaultIsNoticedOrDoesNoHarm) {
  const int faults = ForEachFault(kDeviceInputOutput, [&](FaultPlan& plan) {
    test::PlatformWithSeparator base(GetParam());
    PutReference(base, ReferenceFile());
    test::FaultyPlatform faulty(base.platform, plan);
    for (const Text& name : SelfTestOn(faulty.platform)) {
      EXPECT_NE(std::find(kAllNames.begin(), kAllNames.end(), name), kAllNames.end()) << ToUtf8(name);
    }
    EXPECT_EQ(base.files.OpenReaders(), 0);
  });
  EXPECT_GT(faults, 20);
}

}  // namespace
}  // namespace vorquill21
