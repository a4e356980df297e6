#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tests/platform/contract.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/temporary_folder.hpp"

namespace vorquill21 {
namespace {

using test::AllBytes;
using test::RaisedNumber;

/// An implementation of Files with an empty folder to work in.
class FilesUnderTest {
 public:
  virtual ~FilesUnderTest() = default;
  virtual Files& Get() = 0;
  virtual Text Root() const = 0;
};

class MemoryFilesUnderTest : public FilesUnderTest {
 public:
  MemoryFilesUnderTest() { files_.MakeFolder(Root()); }
  Files& Get() override { return files_; }
  Text Root() const override { return u"/root"; }

 private:
  test::MemoryFiles files_;
};

class FaultyFilesUnderTest : public MemoryFilesUnderTest {
 public:
  Files& Get() override { return faulty_; }

 private:
  test::FaultPlan noFault_;
  test::FaultyFiles faulty_{MemoryFilesUnderTest::Get(), noFault_};
};

class NativeFilesUnderTest : public FilesUnderTest {
 public:
  Files& Get() override { return Platform::Native().GetFiles(); }
  Text Root() const override { return folder_.Path().u16string(); }

 private:
  test::TemporaryFolder folder_;
};

using Implementation = test::Implementation<std::unique_ptr<FilesUnderTest>>;

template <typename UnderTest>
std::unique_ptr<FilesUnderTest> Make() {
  return std::make_unique<UnderTest>();
}

class FilesContractTest : public ::testing::TestWithParam<Implementation> {
 protected:
  Text Below(TextView name) const { return Root() + u'\\' + Text(name); }
  Text Root() const { return underTest_->Root(); }

  std::string Content(TextView name) { return ReadWholeFile(files_, Below(name)); }

  std::vector<Text> Names(TextView pattern) {
    std::vector<Text> names;
    for (const DirectoryEntry& entry : files_.List(Below(pattern))) names.push_back(entry.name);
    return names;
  }

  /// The names ignoring the order, which is the system's own on some.
  std::vector<Text> SortedNames(TextView pattern) {
    std::vector<Text> names = Names(pattern);
    std::ranges::sort(names);
    return names;
  }

  std::unique_ptr<FilesUnderTest> underTest_ = GetParam().get();
  Files& files_ = underTest_->Get();
};

using TextList = std::vector<Text>;

TEST_P(FilesContractTest, ReplaceMakesAFileAndReadsBackEveryByte) {
  files_.Replace(Below(u"data.bin"), AllBytes());
  EXPECT_EQ(Content(u"data.bin"), AllBytes());
}

TEST_P(FilesContractTest, ReplaceLeavesNothingOfTheOldContent) {
  const std::string large(3'000'000, 'x');
  for (const std::string& content : {std::string("first"), large, std::string("2"), std::string()}) {
    files_.Replace(Below(u"a.txt"), content);
    EXPECT_TRUE(Content(u"a.txt") == content) << content.size();
  }
  EXPECT_EQ(Names(u"*"), TextList{u"a.txt"});
}

TEST_P(FilesContractTest, AppendMakesAFileAndAddsToItsEnd) {
  files_.Append(Below(u"log.txt"), "one\r\n");
  files_.Append(Below(u"log.txt"), "");
  files_.Append(Below(u"log.txt"), "two\r\n");
  EXPECT_EQ(Content(u"log.txt"), "one\r\ntwo\r\n");
  files_.Append(Below(u"empty.txt"), "");
  EXPECT_EQ(Content(u"empty.txt"), "");
}

TEST_P(FilesContractTest, AReaderKnowsTheLengthAndGivesTheBytesInOrder) {
  files_.Replace(Below(u"a.txt"), "0123456789");
  const auto reader = files_.OpenForReading(Below(u"a.txt"));
  EXPECT_EQ(reader->Length(), 10u);
  EXPECT_EQ(reader->Read({}), 0u);
  std::array<char, 4> buffer;
  std::string bytes;
  for (std::size_t count; (count = reader->Read(buffer)) > 0;) bytes.append(buffer.data(), count);
  EXPECT_EQ(bytes, "0123456789");
  EXPECT_EQ(reader->Read(buffer), 0u);
}

TEST_P(FilesContractTest, AReaderSkipsBytes) {
  files_.Replace(Below(u"a.txt"), "0123456789");
  struct Case {
    std::uint64_t first;
    std::uint64_t second;
    const char* rest;
  };
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  for (const Case& each : {Case{0, 0, "0123456789"}, Case{3, 2, "56789"}, Case{10, 0, ""}, Case{4, 100, ""},
                           Case{100, 1, ""}, Case{kMost, 0, ""}}) {
    const auto reader = files_.OpenForReading(Below(u"a.txt"));
    reader->Skip(each.first);
    reader->Skip(each.second);
    EXPECT_EQ(ReadRest(*reader, 1), each.rest) << each.first;
    EXPECT_EQ(reader->Length(), 10u);
  }
}

TEST_P(FilesContractTest, TwoReadersOfOneFileDoNotDisturbEachOther) {
  files_.Replace(Below(u"a.txt"), "ab");
  const auto first = files_.OpenForReading(Below(u"a.txt"));
  const auto second = files_.OpenForReading(Below(u"a.txt"));
  std::array<char, 1> fromFirst;
  std::array<char, 1> fromSecond;
  ASSERT_EQ(first->Read(fromFirst), 1u);
  ASSERT_EQ(second->Read(fromSecond), 1u);
  EXPECT_EQ(fromFirst[0], 'a');
  EXPECT_EQ(fromSecond[0], 'a');
}

TEST_P(FilesContractTest, BothSeparatorsSeparate) {
  files_.MakeFolder(Root() + u"/folder");
  files_.Replace(Root() + u"\\folder/a.txt", "1");
  EXPECT_EQ(ReadWholeFile(files_, Root() + u"/folder\\a.txt"), "1");
  EXPECT_EQ(Names(u"folder/*.txt"), TextList{u"a.txt"});
}

TEST_P(FilesContractTest, EachErrorHasItsNumber) {
  enum Operation { kRead, kReplace, kAppend, kDelete, kMakeFolder, kRemoveFolder };
  struct Case {
    Operation operation;
    Text path;
    std::int32_t number;
  };
  files_.Replace(Below(u"file"), "x");
  files_.MakeFolder(Below(u"folder"));
  files_.Replace(Below(u"folder\\inner"), "x");
  const Text missing = Below(u"missing");
  const Text belowMissing = Below(u"missing\\name");
  const Text belowFile = Below(u"file\\name");
  const Text file = Below(u"file");
  const Text folder = Below(u"folder");
  const Text onMissingDrive = u"Q:\\name";
  const Text withNul = Below(u"a") + u'\0' + u'b';
  const Case cases[] = {
      {kRead, missing, 53},
      {kRead, belowMissing, 76},
      {kRead, belowFile, 76},
      {kRead, onMissingDrive, 76},
      {kRead, folder, 70},
      {kRead, withNul, 52},
      {kReplace, belowMissing, 76},
      {kReplace, belowFile, 76},
      {kReplace, onMissingDrive, 76},
      {kReplace, folder, 70},
      {kReplace, withNul, 52},
      {kAppend, belowMissing, 76},
      {kAppend, belowFile, 76},
      {kAppend, onMissingDrive, 76},
      {kAppend, folder, 70},
      {kAppend, withNul, 52},
      {kDelete, missing, 53},
      {kDelete, belowMissing, 53},
      {kDelete, belowFile, 53},
      {kDelete, onMissingDrive, 53},
      {kDelete, folder, 53},
      {kDelete, withNul, 52},
      {kMakeFolder, folder, 75},
      {kMakeFolder, file, 75},
      {kMakeFolder, u"", 75},
      {kMakeFolder, u"\\", 75},
      {kMakeFolder, belowMissing, 76},
      {kMakeFolder, belowFile, 76},
      {kMakeFolder, onMissingDrive, 76},
      {kMakeFolder, withNul, 52},
      {kRemoveFolder, missing, 76},
      {kRemoveFolder, belowMissing, 76},
      {kRemoveFolder, belowFile, 76},
      {kRemoveFolder, file, 76},
      {kRemoveFolder, folder, 75},
      {kRemoveFolder, onMissingDrive, 76},
      {kRemoveFolder, u"", 76},
      {kRemoveFolder, withNul, 52},
  };
  for (const Case& each : cases) {
    const auto number = RaisedNumber([&] {
      switch (each.operation) {
        case kRead:
          files_.OpenForReading(each.path);
          break;
        case kReplace:
          files_.Replace(each.path, "new");
          break;
        case kAppend:
          files_.Append(each.path, "new");
          break;
        case kDelete:
          files_.Delete(each.path);
          break;
        case kMakeFolder:
          files_.MakeFolder(each.path);
          break;
        case kRemoveFolder:
          files_.RemoveFolder(each.path);
          break;
      }
    });
    EXPECT_EQ(number, each.number) << "operation " << each.operation << " on " << ToUtf8(each.path);
  }
  EXPECT_EQ(SortedNames(u"*"), (TextList{u"file", u"folder"}));
  EXPECT_EQ(Content(u"file"), "x");
  EXPECT_EQ(Content(u"folder\\inner"), "x");
}

TEST_P(FilesContractTest, TheEmptyNameIsNoFile) {
  EXPECT_NE(RaisedNumber([&] { files_.OpenForReading(u""); }), 0);
  EXPECT_NE(RaisedNumber([&] { files_.Replace(u"", "x"); }), 0);
  EXPECT_NE(RaisedNumber([&] { files_.Append(u"", "x"); }), 0);
  EXPECT_EQ(RaisedNumber([&] { files_.Delete(u""); }), 53);
  EXPECT_TRUE(files_.List(u"").empty());
  EXPECT_FALSE(files_.FolderExists(u""));
}

TEST_P(FilesContractTest, FoldersAreMadeFoundAndRemoved) {
  const Text folder = Below(u"folder");
  EXPECT_FALSE(files_.FolderExists(folder));
  files_.MakeFolder(folder);
  EXPECT_TRUE(files_.FolderExists(folder));
  EXPECT_TRUE(files_.FolderExists(folder + u'\\'));
  EXPECT_TRUE(files_.FolderExists(folder + u'/'));
  files_.MakeFolder(folder + u"\\inner\\");
  EXPECT_TRUE(files_.FolderExists(folder + u"/inner"));
  files_.RemoveFolder(folder + u"/inner");
  files_.RemoveFolder(folder);
  EXPECT_FALSE(files_.FolderExists(folder));
}

TEST_P(FilesContractTest, WhatIsNoFolderDoesNotExistAsOne) {
  files_.Replace(Below(u"file"), "x");
  EXPECT_FALSE(files_.FolderExists(Below(u"file")));
  EXPECT_FALSE(files_.FolderExists(Below(u"file\\below")));
  EXPECT_FALSE(files_.FolderExists(Below(u"missing")));
  EXPECT_FALSE(files_.FolderExists(Below(u"*")));
  EXPECT_FALSE(files_.FolderExists(u"Q:\\"));
  EXPECT_FALSE(files_.FolderExists(Root() + u'\0'));
}

TEST_P(FilesContractTest, AListingOfAPlainNameHoldsThatEntry) {
  files_.Replace(Below(u"a.txt"), "x");
  files_.MakeFolder(Below(u"folder"));
  const auto file = files_.List(Below(u"a.txt"));
  ASSERT_EQ(file.size(), 1u);
  EXPECT_EQ(file[0].name, u"a.txt");
  EXPECT_TRUE(file[0].IsOrdinaryFile());
  const auto folder = files_.List(Below(u"folder"));
  ASSERT_EQ(folder.size(), 1u);
  EXPECT_EQ(folder[0].name, u"folder");
  EXPECT_TRUE(folder[0].isFolder);
  EXPECT_FALSE(folder[0].IsOrdinaryFile());
}

TEST_P(FilesContractTest, AListingThatFindsNothingIsEmpty) {
  files_.Replace(Below(u"file"), "x");
  for (const TextView pattern :
       {u"missing", u"missing\\*", u"file\\*", u"file\\x", u"", u"file\\", u"*.txt"}) {
    EXPECT_TRUE(files_.List(Below(pattern)).empty()) << ToUtf8(pattern);
  }
  EXPECT_TRUE(files_.List(u"Q:\\*").empty());
}

TEST_P(FilesContractTest, ListingsMatchWildcardsInTheLastPartIgnoringCase) {
  files_.MakeFolder(Below(u"sub.tt1"));
  for (const TextView name :
       {u"test1.tt1", u"Test2.TT1", u"test3.tt1x", u"test10.tt1", u"plain", u"[1].tt1"}) {
    files_.Replace(Below(name), "0");
  }
  EXPECT_EQ(SortedNames(u"*.tt1"),
            (TextList{u"Test2.TT1", u"[1].tt1", u"sub.tt1", u"test1.tt1", u"test10.tt1"}));
  EXPECT_EQ(SortedNames(u"TEST?.tt1"), (TextList{u"Test2.TT1", u"test1.tt1"}));
  EXPECT_EQ(SortedNames(u"[1]*"), (TextList{u"[1].tt1"}));
  EXPECT_EQ(SortedNames(u"*.*").size(), 6u);
  EXPECT_EQ(SortedNames(u"*").size(), 7u);
  EXPECT_EQ(SortedNames(u"x*"), TextList{});
}

TEST_P(FilesContractTest, ListingsAreOrderedIgnoringCase) {
  for (const TextView name : {u"b.txt", u"C.txt", u"a.txt", u"D.txt"}) files_.Replace(Below(name), "0");
  EXPECT_EQ(Names(u"*.txt"), (TextList{u"a.txt", u"b.txt", u"C.txt", u"D.txt"}));
}

TEST_P(FilesContractTest, NamesOfEveryKindSurvive) {
  const TextList names = {u"two words.txt",    u"\u00E4\u00F6\u00FC.txt",
                          u"\u0416\u65E5.txt", u"\U0001F600.txt",
                          u"-option",          Text(200, u'n')};
  for (const Text& name : names) {
    files_.Replace(Below(name), ToUtf8(name));
    EXPECT_EQ(Content(name), ToUtf8(name));
    EXPECT_EQ(Names(name), TextList{name});
  }
  EXPECT_EQ(Names(u"*").size(), names.size());
  for (const Text& name : names) files_.Delete(Below(name));
  EXPECT_TRUE(Names(u"*").empty());
}

TEST_P(FilesContractTest, DeleteTakesTheFilesThatThePatternNamesAndNoFolders) {
  files_.MakeFolder(Below(u"folder.tt1"));
  for (const TextView name : {u"a.tt1", u"b.TT1", u"c.tt2"}) files_.Replace(Below(name), "0");
  files_.Delete(Below(u"*.tt1"));
  EXPECT_EQ(SortedNames(u"*"), (TextList{u"c.tt2", u"folder.tt1"}));
  EXPECT_EQ(RaisedNumber([&] { files_.Delete(Below(u"*.tt1")); }), 53);
  files_.Delete(Below(u"c.tt2"));
  EXPECT_EQ(Names(u"*"), TextList{u"folder.tt1"});
}

TEST_P(FilesContractTest, ReadingAWholeFileThatIsMissingIsError53) {
  EXPECT_EQ(RaisedNumber([&] { ReadWholeFile(files_, Below(u"missing")); }), 53);
}

INSTANTIATE_TEST_SUITE_P(Implementations, FilesContractTest,
                         ::testing::Values(Implementation{"Memory", Make<MemoryFilesUnderTest>},
                                           Implementation{"FaultyWithoutFault", Make<FaultyFilesUnderTest>},
                                           Implementation{"Native", Make<NativeFilesUnderTest>}),
                         test::kNameOfImplementation);

}  // namespace
}  // namespace vorquill21
