#include "tests/support/self_test.hpp"

#include <fstream>
#include <iterator>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/for_each_shortage.hpp"

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

/// Writes a text otherwise than it was asked to.
class ChangingFiles : public test::MemoryFiles {
 public:
  void Replace(TextView path, std::string_view bytes) override {
    std::string changed(bytes);
    if (const std::size_t at = changed.find(from); at != std::string::npos) {
      changed.replace(at, from.size(), to);
      ++changes;
    }
    MemoryFiles::Replace(path, changed);
  }

  std::string from;
  std::string to;
  int changes = 0;
};

TEST_P(CFileStreamSelfTest, EveryValueThatIsReadBackOtherwiseIsNoticed) {
  const std::string number = ToUtf8(Localised(u"1.2"));
  const struct {
    std::string from;
    std::string to;
    TextView name;
  } rows[] = {
      {"description1", "description3", u"SelfTest_Main"},
      {"\tdescription2", "\tdescription", u"SelfTest_Main"},
      {ToUtf8(Localised(u"3\t0\t4.25")), ToUtf8(Localised(u"3\t0\t4.2")), u"SelfTest_Main"},
      {"[TABLE FIELD]", "[TABLE]", u"SelfTest_Main"},
      {"VERSION 1", "VERSION 3", u"SelfTest_ReadWrite"},
      {"VERSION 2", "VERSION 3", u"SelfTest_ReadWrite"},
      {"[text]\t1.2", "[text]\t1.20", u"SelfTest_ReadWrite"},
      {"[number]\t" + number, "[number]\t" + number + "1", u"SelfTest_ReadWrite"},
      {"elephant", "elephants", u"SelfTest_ReadWrite"},
      {"item1", "item", u"SelfTest_ReadWrite"},
      {"\titem4", "", u"SelfTest_ReadWrite"},
      {"[letter]\tq", "[letter]\tQ", u"SelfTest_ReadWrite"},
      {"[FILEVERSION]\tv2", "[FILEVERSION]\tv3", u"SelfTest_IsCompatibleVersion"},
  };
  for (const auto& row : rows) {
    ChangingFiles files;
    files.MakeFolder(u"/library");
    files.MakeFolder(u"/library/self test");
    files.Replace(u"/library/self test/3d ref.txt", ReferenceFile());
    files.from = row.from;
    files.to = row.to;
    files.changes = 0;
    Platform platform(files, fake.desktop, fake.locale, fake.process, fake.settings);
    EXPECT_EQ(SelfTestOn(platform), FailedTests{Text(row.name)}) << row.from;
    EXPECT_GT(files.changes, 0) << row.from;
  }
}

TEST_P(CFileStreamSelfTest, AShortageOfMemoryFailsTheCheckThatItHits) {
  std::vector<Text> names;
  const auto runSelfTest = [&](test::MemoryShortage& shortage) {
    test::PlatformWithSeparator base(GetParam());
    PutReference(base, ReferenceFile());
    base.desktop.messages.reserve(20);
    const CFileStream tested(base.platform);
    FailedTests failedTests;
    failedTests.reserve(10);
    shortage.During([&] { CallSelfTest(tested, failedTests); });
    ASSERT_LE(failedTests.size(), 1u);
    if (!failedTests.empty() && (names.empty() || names.back() != failedTests[0])) {
      names.push_back(failedTests[0]);
    }
  };
  test::ForEachShortage(runSelfTest, {1});
  EXPECT_EQ(names, kAllNames);
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
