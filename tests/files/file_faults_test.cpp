#include <gtest/gtest.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tests/support/faulty_platform.hpp"
#include "tests/support/locales.hpp"
#include "tests/support/memory_failures.hpp"
#include "vorquill21/files/file.hpp"

namespace vorquill21 {
namespace {

using test::ErrorMessage;
using test::FaultPlan;
using test::ForEachFault;
using test::ShownMessage;

constexpr TextView kPath = u"/library/data.txt";

/// A fresh platform whose calls fail as planned.
struct FaultySetting {
  explicit FaultySetting(FaultPlan& plan) : faulty(fake.platform, plan), file(faulty.platform) {
    fake.files.Replace(kPath, "content\r\n");
  }

  /// What must hold after every operation.
  void ExpectNothingLeftOpenAndShown(const std::vector<ShownMessage>& messages) const {
    EXPECT_EQ(fake.files.OpenReaders(), 0);
    EXPECT_EQ(fake.desktop.messages, messages);
    EXPECT_EQ(fake.desktop.beeps, 0);
  }

  test::FakePlatform fake;
  test::FaultyPlatform faulty;
  CFile file;
};

class FileFaultsTest : public ::testing::TestWithParam<RuntimeErrorNumber> {};

INSTANTIATE_TEST_SUITE_P(EveryNumber, FileFaultsTest,
                         ::testing::Values(kOutOfMemory, kBadFileName, kFileNotFound, kDeviceInputOutput,
                                           kDiskFull, kTooManyFiles, kPermissionDenied, kPathFileAccess,
                                           kPathNotFound),
                         [](const auto& test) { return "Error" + std::to_string(test.param); });

TEST_P(FileFaultsTest, ReadingFailsWithAMessageOnceTheFileWasFound) {
  for (const bool isSilent : {true, false}) {
    int run = 0;
    const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
      FaultySetting setting(plan);
      Text text = u"before";
      const bool isRead = setting.file.FileReadAsString(kPath, text, isSilent);

      const bool wasFound = ++run > 1;
      const bool isReported = plan.Hit() && wasFound && !isSilent;
      EXPECT_EQ(isRead, !plan.Hit());
      EXPECT_EQ(text, plan.Hit() ? u"" : u"content");
      EXPECT_EQ(setting.fake.files.Content(kPath), "content\r\n");
      setting.ExpectNothingLeftOpenAndShown(
          isReported ? std::vector{ErrorMessage(u"An error occurred while reading file: /library/data.txt")}
                     : std::vector<ShownMessage>());
    });
    EXPECT_EQ(faults, 4);  // the listing, the opening, and two reads
  }
}

TEST_P(FileFaultsTest, WritingFailsWithAMessageAndKeepsTheOldContent) {
  for (const bool isSilent : {true, false}) {
    const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
      FaultySetting setting(plan);
      const bool isWritten = setting.file.FileWriteAsString(kPath, u"new", isSilent);
      EXPECT_EQ(isWritten, !plan.Hit());
      EXPECT_EQ(setting.fake.files.Content(kPath), plan.Hit() ? "content\r\n" : "new\r\n");
      setting.ExpectNothingLeftOpenAndShown(
          plan.Hit() && !isSilent
              ? std::vector{ErrorMessage(u"An error occurred while writing file: /library/data.txt")}
              : std::vector<ShownMessage>());
    });
    EXPECT_EQ(faults, 1);
  }
}

TEST_P(FileFaultsTest, ComparingGivesFalse) {
  const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
    FaultySetting setting(plan);
    setting.fake.files.Replace(u"/library/other.txt", "CONTENT");
    const bool areEqual = setting.file.CompareFiles(kPath, u"/library/other.txt");
    EXPECT_EQ(areEqual, !plan.Hit());
    setting.ExpectNothingLeftOpenAndShown({});
  });
  EXPECT_EQ(faults, 8);
}

TEST_P(FileFaultsTest, AFileThatCannotBeLookedForDoesNotExist) {
  const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
    FaultySetting setting(plan);
    const bool exists = setting.file.FileExists(kPath);
    EXPECT_EQ(exists, !plan.Hit());
    setting.ExpectNothingLeftOpenAndShown({});
  });
  EXPECT_EQ(faults, 1);
}

TEST_P(FileFaultsTest, AFolderThatCannotBeLookedForDoesNotExist) {
  const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
    FaultySetting setting(plan);
    const bool exists = setting.file.DirExists(u"/library");
    EXPECT_EQ(exists, !plan.Hit());
    setting.ExpectNothingLeftOpenAndShown({});
  });
  EXPECT_EQ(faults, 1);
}

TEST_P(FileFaultsTest, MakingAFolderTellsWhetherItIsThere) {
  const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
    FaultySetting setting(plan);
    const bool isMade = setting.file.DirMake(u"/library/new");
    EXPECT_EQ(isMade, setting.fake.files.FolderExists(u"/library/new"));
    setting.ExpectNothingLeftOpenAndShown({});
  });
  EXPECT_EQ(faults, 2);
}

TEST_P(FileFaultsTest, MakingAFolderThatExistsButCannotBeLookedForFails) {
  const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
    FaultySetting setting(plan);
    const bool isThere = setting.file.DirMake(u"/library");
    EXPECT_EQ(isThere, !plan.Hit());
    setting.ExpectNothingLeftOpenAndShown({});
  });
  EXPECT_EQ(faults, 1);
}

TEST_P(FileFaultsTest, ListingThatFailsLeavesTheArrayAndCountsNothing) {
  const BoundedArray<Text> before(std::vector<Text>{u"old", u"older"});
  const int faults = ForEachFault(GetParam(), [&](FaultPlan& plan) {
    FaultySetting setting(plan);
    BoundedArray<Text> list = before;
    std::int32_t count = -1;
    EXPECT_NO_THROW(setting.file.ListFilesMatchingExt(u"/library", u"txt", list, count));
    EXPECT_EQ(count, plan.Hit() ? 0 : 1);
    EXPECT_EQ(list, plan.Hit() ? before : BoundedArray<Text>(std::vector<Text>{u"data.txt"}));
    setting.ExpectNothingLeftOpenAndShown({});
  });
  EXPECT_EQ(faults, 1);
}

/// The number that DirMakeNested raises, 0 when none; the description must be the standard one.
std::int32_t ErrorOfNestedFolders(const CFile& file, TextView path) {
  try {
    file.DirMakeNested(path);
    return 0;
  } catch (const LibraryError& error) {
    EXPECT_EQ(error.Source(), u"");
    EXPECT_EQ(error.Description(), RuntimeErrorDescription(error.Number()));
    return error.Number();
  }
}

/// What is left of DirMakeNested("\library\a\b") when its 1st, 2nd, ... call fails: the look for the whole
/// path, then the making of "", "\library", "\library\a" and "\library\a\b".
struct NestedOutcome {
  std::int32_t error;
  bool hasA;
  bool hasB;
};

void ExpectNestedOutcomes(RuntimeErrorNumber number, std::span<const NestedOutcome> outcomes) {
  std::size_t run = 0;
  ForEachFault(number, [&](FaultPlan& plan) {
    FaultySetting setting(plan);
    ASSERT_LT(run, outcomes.size());
    const NestedOutcome& expected = outcomes[run++];
    EXPECT_EQ(ErrorOfNestedFolders(setting.file, u"\\library\\a\\b"), expected.error) << run;
    EXPECT_EQ(setting.fake.files.FolderExists(u"/library/a"), expected.hasA) << run;
    EXPECT_EQ(setting.fake.files.FolderExists(u"/library/a/b"), expected.hasB) << run;
    setting.ExpectNothingLeftOpenAndShown({});
  });
  EXPECT_EQ(run, outcomes.size());
}

TEST_P(FileFaultsTest, DeliberateDirMakeNestedStopsAtTheFirstErrorButPassesOver75) {
  const RuntimeErrorNumber number = GetParam();
  if (number == kPathFileAccess) {
    const NestedOutcome kOutcomes[] = {{0, true, true},    {0, true, true},  {0, true, true},
                                       {76, false, false}, {0, true, false}, {0, true, true}};
    ExpectNestedOutcomes(number, kOutcomes);
  } else {
    const NestedOutcome kOutcomes[] = {{0, true, true},        {number, false, false}, {number, false, false},
                                       {number, false, false}, {number, true, false},  {0, true, true}};
    ExpectNestedOutcomes(number, kOutcomes);
  }
}

TEST_P(FileFaultsTest, TextOperationsTouchNoFiles) {
  const int faults = ForEachFault(GetParam(), [](FaultPlan& plan) {
    FaultySetting setting(plan);
    EXPECT_EQ(setting.file.Crc32Make(u"123456789"), u"CBF43926");
    EXPECT_EQ(setting.file.ParseFileDir(u"a\\b.c"), u"a\\");
    EXPECT_EQ(setting.file.ParseFileExt(u"a\\b.c"), u"c");
    EXPECT_EQ(setting.file.ParseFileName(u"a\\b.c"), u"b.c");
    EXPECT_EQ(setting.file.ParseFileTitle(u"a\\b.c"), u"b");
    EXPECT_EQ(setting.file.EnsureExtension(u"a\\b.c", u"d"), u"a\\b.d");
  });
  EXPECT_EQ(faults, 0);
}

/// Files for which no memory is left; `Failure` is the exception of the standard library that says so.
template <typename Failure>
class ExhaustedFiles : public Files {
 public:
  std::vector<DirectoryEntry> List(TextView) override { throw Failure(); }
  bool FolderExists(TextView) override { throw Failure(); }
  std::unique_ptr<ByteReader> OpenForReading(TextView) override { throw Failure(); }
  void Replace(TextView, std::string_view) override { throw Failure(); }
  void Append(TextView, std::string_view) override { throw Failure(); }
  void Delete(TextView) override { throw Failure(); }
  void MakeFolder(TextView) override { throw Failure(); }
  void RemoveFolder(TextView) override { throw Failure(); }
};

template <typename Failure>
class OutOfMemoryTest : public ::testing::Test {};
TYPED_TEST_SUITE(OutOfMemoryTest, test::MemoryFailures);

TYPED_TEST(OutOfMemoryTest, IsAFailureLikeAnyOther) {
  test::FakePlatform fake;
  ExhaustedFiles<TypeParam> files;
  Platform platform = fake.With(files);
  const CFile file(platform);

  EXPECT_FALSE(file.DirExists(u"/library"));
  EXPECT_FALSE(file.DirMake(u"/library"));
  EXPECT_EQ(ErrorOfNestedFolders(file, u"\\library"), 7);
  EXPECT_FALSE(file.FileExists(kPath));
  EXPECT_FALSE(file.CompareFiles(kPath, kPath));
  Text text = u"before";
  EXPECT_FALSE(file.FileReadAsString(kPath, text, false));
  EXPECT_EQ(text, u"");
  EXPECT_FALSE(file.FileWriteAsString(kPath, u"text"));
  BoundedArray<Text> list;
  std::int32_t count = -1;
  file.ListFilesMatchingExt(u"/library", u"txt", list, count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(list.Rank(), 0);
  EXPECT_TRUE(fake.desktop.messages.empty());

  EXPECT_FALSE(file.FileWriteAsString(kPath, u"text", false));
  EXPECT_EQ(fake.desktop.messages,
            std::vector{ErrorMessage(u"An error occurred while writing file: /library/data.txt")});
}

TEST(ExhaustedLocaleTest, ConversionsFailLikeFiles) {
  test::FakePlatform fake;
  test::ExhaustedLocale locale;
  Platform platform = fake.With(locale);
  const CFile file(platform);
  fake.files.Replace(kPath, "content\r\n");

  EXPECT_EQ(file.Crc32Make(u"123456789"), u"");
  Text text = u"before";
  EXPECT_FALSE(file.FileReadAsString(kPath, text, false));
  EXPECT_EQ(text, u"");
  EXPECT_FALSE(file.FileWriteAsString(kPath, u"new", false));
  EXPECT_EQ(fake.files.Content(kPath), "content\r\n");
  EXPECT_EQ(fake.files.OpenReaders(), 0);
  EXPECT_EQ(fake.desktop.messages,
            (std::vector{ErrorMessage(u"An error occurred while reading file: /library/data.txt"),
                         ErrorMessage(u"An error occurred while writing file: /library/data.txt")}));
}

}  // namespace
}  // namespace vorquill21
