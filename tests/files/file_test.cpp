#include "vorquill21/files/file.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/locales.hpp"
#include "tests/support/raised_error.hpp"
#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

using test::ErrorMessage;
using test::ErrorRaisedBy;
using test::RaisedError;
using test::RaisedNumber;
using test::ShownMessage;

constexpr TextView kPath = u"/library/data.txt";

Text ReadingError(TextView path) {
  return Text(u"An error occurred while reading file: ").append(path);
}

Text WritingError(TextView path) {
  return Text(u"An error occurred while writing file: ").append(path);
}

class CFileTest : public ::testing::Test {
 protected:
  ~CFileTest() override { EXPECT_EQ(fake_.files.OpenReaders(), 0); }

  const std::vector<ShownMessage>& Messages() const { return fake_.desktop.messages; }

  test::FakePlatform fake_;
  CFile file_{fake_.platform};
};

// Folders.

TEST_F(CFileTest, FolderExists) {
  fake_.files.Replace(kPath, "x");
  EXPECT_TRUE(file_.DirExists(u"/library"));
  EXPECT_TRUE(file_.DirExists(u"\\library\\"));
  EXPECT_FALSE(file_.DirExists(u"/library/missing"));
  EXPECT_FALSE(file_.DirExists(kPath));
  EXPECT_FALSE(file_.DirExists(u""));
  EXPECT_FALSE(file_.DirExists(u"X:\\library"));
}

TEST_F(CFileTest, MakesAFolderOrFindsItMade) {
  EXPECT_TRUE(file_.DirMake(u"/library/new"));
  EXPECT_TRUE(fake_.files.FolderExists(u"/library/new"));
  EXPECT_TRUE(file_.DirMake(u"/library/new"));
}

TEST_F(CFileTest, MakesOneLevelOfFoldersOnlyAndFailsInSilence) {
  EXPECT_FALSE(file_.DirMake(u"/library/missing/new"));
  EXPECT_FALSE(file_.DirMake(u""));
  EXPECT_FALSE(file_.DirMake(u"X:\\new"));
  EXPECT_FALSE(fake_.files.FolderExists(u"/library/missing"));
  EXPECT_TRUE(Messages().empty());
}

TEST_F(CFileTest, MakesEveryMissingFolderAlongAPath) {
  file_.DirMakeNested(u"\\library\\a\\b\\c");
  EXPECT_TRUE(fake_.files.FolderExists(u"/library/a/b/c"));
  file_.DirMakeNested(u"\\library\\a\\b\\c");
  file_.DirMakeNested(u"\\library\\a\\d\\");
  EXPECT_TRUE(fake_.files.FolderExists(u"/library/a/d"));
}

TEST_F(CFileTest, NestedFoldersMayBeginWithAName) {
  file_.DirMakeNested(u"a\\b");
  EXPECT_TRUE(fake_.files.FolderExists(u"a\\b"));
}

TEST_F(CFileTest, NestedFoldersOfTheEmptyPathAreNone) {
  EXPECT_NO_THROW(file_.DirMakeNested(u""));
}

TEST_F(CFileTest, OnlyBackslashesSeparateTheLevelsOfNestedFolders) {
  EXPECT_EQ(RaisedNumber([&] { file_.DirMakeNested(u"\\library\\a/b"); }), 76);
  EXPECT_FALSE(fake_.files.FolderExists(u"/library/a"));
}

TEST_F(CFileTest, NestedFoldersOnAMissingDriveAreError76) {
  EXPECT_EQ(ErrorRaisedBy([&] { file_.DirMakeNested(u"X:\\a\\b"); }),
            (RaisedError{76, u"", u"Path not found"}));
}

TEST_F(CFileTest, NestedFoldersBelowAFileAreError76) {
  fake_.files.Replace(kPath, "x");
  EXPECT_EQ(RaisedNumber([&] { file_.DirMakeNested(u"\\library\\data.txt\\a"); }), 76);
}

/// Remembers which folders it was to make.
class RecordingFolders : public test::MemoryFiles {
 public:
  void MakeFolder(TextView path) override {
    made.emplace_back(path);
    MemoryFiles::MakeFolder(path);
  }

  std::vector<Text> made;
};

TEST(NestedFoldersTest, EachSeparatorAndTheEndOfThePathEndALevel) {
  struct Row {
    TextView path;
    std::vector<Text> levels;
  };
  const Row rows[] = {
      {u"", {u""}},
      {u"a", {u"a"}},
      {u"a\\b", {u"a", u"a\\b"}},
      {u"\\a\\b\\", {u"", u"\\a", u"\\a\\b", u"\\a\\b\\"}},
      {u"a\\\\b", {u"a", u"a\\", u"a\\\\b"}},
      {u"\\\\a", {u"", u"\\", u"\\\\a"}},
  };
  for (const Row& row : rows) {
    test::FakePlatform fake;
    RecordingFolders files;
    Platform platform = fake.With(files);
    const CFile file(platform);
    file.DirMakeNested(row.path);
    EXPECT_EQ(files.made, row.levels);
    const bool namesFolder = file.DirExists(row.path);
    EXPECT_EQ(namesFolder, !row.path.empty());
    files.made.clear();
    file.DirMakeNested(row.path);
    EXPECT_EQ(files.made, namesFolder ? std::vector<Text>() : row.levels) << "what exists is not made again";
  }
}

// Existence of files.

TEST_F(CFileTest, FileExistsOnlyWhenItIsAnOrdinaryFile) {
  fake_.files.Replace(u"/library/data.txt", "x");
  fake_.files.Replace(u"/library/.hidden", "x");
  EXPECT_TRUE(file_.FileExists(u"/library/data.txt"));
  EXPECT_TRUE(file_.FileExists(u"\\library\\data.txt"));
  EXPECT_FALSE(file_.FileExists(u"/library/.hidden"));
  EXPECT_FALSE(file_.FileExists(u"/library"));
  EXPECT_FALSE(file_.FileExists(u"/library/missing.txt"));
  EXPECT_FALSE(file_.FileExists(u"/missing/data.txt"));
  EXPECT_FALSE(file_.FileExists(u"X:\\library\\data.txt"));
}

TEST_F(CFileTest, FileOfTheEmptyNameOrOfANameThatEndsInASeparatorDoesNotExist) {
  fake_.files.Replace(kPath, "x");
  EXPECT_FALSE(file_.FileExists(u""));
  EXPECT_FALSE(file_.FileExists(u"/library\\"));
  EXPECT_FALSE(file_.FileExists(u"/library/"));
  EXPECT_FALSE(file_.FileExists(u"/library/data.txt\\"));
  EXPECT_FALSE(file_.FileExists(u"/library/data.txt/"));
}

TEST_F(CFileTest, DeliberateFileOfANameWithWildcardsExistsWhenAnyOrdinaryFileMatches) {
  fake_.files.MakeFolder(u"/library/folder.txt");
  fake_.files.Replace(u"/library/.hidden.txt", "x");
  EXPECT_FALSE(file_.FileExists(u"/library/*.txt"));
  fake_.files.Replace(kPath, "x");
  EXPECT_TRUE(file_.FileExists(u"/library/*.TXT"));
  EXPECT_TRUE(file_.FileExists(u"/library/d?ta.*"));
  EXPECT_FALSE(file_.FileExists(u"/library/*.dat"));
}

TEST_F(CFileTest, NamesThatHoldANulAreNoFilesAndNoFolders) {
  using namespace std::string_view_literals;
  constexpr TextView kWithNul = u"/library/data.txt\0"sv;
  fake_.files.Replace(kPath, "x");
  EXPECT_FALSE(file_.FileExists(kWithNul));
  EXPECT_FALSE(file_.DirExists(u"/library\0"sv));
  EXPECT_FALSE(file_.DirMake(u"/library/new\0"sv));
  Text text = u"before";
  EXPECT_FALSE(file_.FileReadAsString(kWithNul, text, false));
  EXPECT_EQ(text, u"");
  EXPECT_FALSE(file_.CompareFiles(kPath, kWithNul));
  BoundedArray<Text> list;
  std::int32_t count = -1;
  file_.ListFilesMatchingExt(u"/library", u"txt\0"sv, list, count);
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(Messages().empty());
  EXPECT_FALSE(file_.FileWriteAsString(kWithNul, u"text", false));
  EXPECT_EQ(Messages(), std::vector{ErrorMessage(WritingError(kWithNul))});
  EXPECT_EQ(fake_.files.Content(kPath), "x");
  EXPECT_EQ(test::RaisedNumber([&] { file_.DirMakeNested(u"\\library\\new\0"sv); }), kBadFileName);
}

// Reading.

struct ReadCase {
  std::string_view bytes;
  TextView text;
};

TEST_F(CFileTest, DeliberateReadingRemovesOneLineEnd) {
  using namespace std::string_view_literals;
  const ReadCase cases[] = {
      {"a", u"a"},
      {"a\r\n", u"a"},
      {"a\n", u"a"},
      {"a\r", u"a"},
      {"a\r\n\r\n", u"a\r\n"},
      {"a\n\n", u"a\n"},
      {"a\r\r", u"a\r"},
      {"a\n\r", u"a\n"},
      {"\r\na", u"\r\na"},
      {"\r\n", u""},
      {"\r", u""},
      {"\n\n", u"\n"},
      {"\0"sv, u"\0"sv},
      {"a\0"sv, u"a\0"sv},
      {"a\0\r\n"sv, u"a\0"sv},
      {"a\r\n\0"sv, u"a\r\n\0"sv},
  };
  for (const ReadCase& row : cases) {
    fake_.files.Replace(kPath, row.bytes);
    Text text = u"before";
    EXPECT_TRUE(file_.FileReadAsString(kPath, text, false)) << ToUtf8(row.text);
    EXPECT_EQ(text, row.text);
  }
  EXPECT_TRUE(Messages().empty());
}

TEST_F(CFileTest, ReadingFollowsTheStepsForAllShortFilesOfFourBytes) {
  constexpr char kBytes[] = {'a', '\r', '\n', '\0'};
  constexpr int kLongest = 5;
  for (int length = 0; length <= kLongest; ++length) {
    for (int number = 0; number < 1 << (2 * length); ++number) {
      std::string bytes;
      for (int i = 0; i < length; ++i) bytes += kBytes[(number >> (2 * i)) % 4];
      fake_.files.Replace(kPath, bytes);
      std::string expected = bytes + '\0';
      bool isRead = true;
      for (const char last : {'\0', '\n', '\r'}) {
        isRead = isRead && !expected.empty();
        if (isRead && expected.back() == last) expected.pop_back();
      }
      Text text = u"before";
      ASSERT_EQ(file_.FileReadAsString(kPath, text), isRead) << number << " of " << length;
      ASSERT_EQ(text, isRead ? FromCodePage(fake_.locale, expected) : Text()) << number << " of " << length;
    }
  }
}

TEST_F(CFileTest, DeliberateReadingFailsWhenNothingIsLeftToLookAt) {
  for (const std::string_view bytes : {"", "\n"}) {
    fake_.desktop.messages.clear();
    fake_.files.Replace(kPath, bytes);
    Text text = u"before";
    EXPECT_FALSE(file_.FileReadAsString(kPath, text));
    EXPECT_EQ(text, u"");
    EXPECT_TRUE(Messages().empty());

    text = u"before";
    EXPECT_FALSE(file_.FileReadAsString(kPath, text, false));
    EXPECT_EQ(text, u"");
    EXPECT_EQ(Messages(), std::vector{ErrorMessage(ReadingError(kPath))});
  }
}

TEST_F(CFileTest, DeliberateReadingAMissingFileFailsWithoutAMessage) {
  fake_.files.Replace(u"/library/.hidden", "x");
  for (const TextView path : {u"/library/missing.txt", u"/library/.hidden", u"/library", u""}) {
    Text text = u"before";
    EXPECT_FALSE(file_.FileReadAsString(path, text, false));
    EXPECT_EQ(text, u"");
  }
  EXPECT_TRUE(Messages().empty());
}

TEST_F(CFileTest, DeliberateReadingANameWithWildcardsFindsAFileButCannotOpenIt) {
  fake_.files.Replace(kPath, "x");
  Text text = u"before";
  EXPECT_FALSE(file_.FileReadAsString(u"/library/*.txt", text, false));
  EXPECT_EQ(text, u"");
  EXPECT_EQ(Messages(), std::vector{ErrorMessage(ReadingError(u"/library/*.txt"))});
}

TEST_F(CFileTest, CharacterCutOffAtTheEndIsReadWithTheNulBehindTheFile) {
  test::TwoByteLocale locale;
  Platform platform = fake_.With(locale);
  const CFile file(platform);
  const ReadCase cases[] = {{"ab\x81\x42\r\n", u"ab\u8142"},
                            {"ab\x81\r\n", u"ab\u810D"},
                            {"ab\x81\n", u"ab\u810A"},
                            {"ab\x81", u"ab\u8100"},
                            {"\x81", u"\u8100"}};
  for (const ReadCase& row : cases) {
    fake_.files.Replace(kPath, row.bytes);
    Text text = u"before";
    EXPECT_TRUE(file.FileReadAsString(kPath, text, false)) << ToUtf8(row.text);
    EXPECT_EQ(text, row.text);
  }
}

TEST_F(CFileTest, PathMayStandInTheTextThatIsRead) {
  fake_.files.Replace(kPath, "content\r\n");
  Text text(kPath);
  EXPECT_TRUE(file_.FileReadAsString(text, text));
  EXPECT_EQ(text, u"content");
}

// Writing.

TEST_F(CFileTest, WritesTheTextAndALineEnd) {
  EXPECT_TRUE(file_.FileWriteAsString(kPath, u"one\r\ntwo", false));
  EXPECT_EQ(fake_.files.Content(kPath), "one\r\ntwo\r\n");
  EXPECT_TRUE(file_.FileWriteAsString(kPath, u""));
  EXPECT_EQ(fake_.files.Content(kPath), "\r\n");
  EXPECT_TRUE(Messages().empty());
}

TEST_F(CFileTest, ReadsBackEveryTextThatWasWritten) {
  using namespace std::string_view_literals;
  for (const TextView written :
       {u""sv, u"a"sv, u"\n"sv, u"\r"sv, u"\r\n"sv, u"a\r\n"sv, u"\0"sv, u"a\0\r\n\0"sv, u"é€\u0081"sv}) {
    EXPECT_TRUE(file_.FileWriteAsString(kPath, written));
    Text readBack = u"before";
    EXPECT_TRUE(file_.FileReadAsString(kPath, readBack));
    EXPECT_EQ(readBack, written);
  }
}

TEST_F(CFileTest, EveryByteOfTheCodePageSurvivesTheWayThereAndBack) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  fake_.files.Replace(kPath, bytes);
  Text text;
  EXPECT_TRUE(file_.FileReadAsString(kPath, text));
  EXPECT_EQ(text.size(), 256u);
  EXPECT_TRUE(file_.FileWriteAsString(kPath, text));
  EXPECT_EQ(fake_.files.Content(kPath), bytes + "\r\n");
}

TEST_F(CFileTest, CharactersOutsideTheCodePageAreWrittenAsQuestionMarks) {
  EXPECT_TRUE(file_.FileWriteAsString(kPath, u"a\u0416\u4E2Db"));
  EXPECT_EQ(fake_.files.Content(kPath), "a??b\r\n");
}

TEST_F(CFileTest, FailedWriteIsReportedUnlessSilent) {
  for (const TextView path : {u"/missing/data.txt", u"/library", u"X:\\data.txt"}) {
    fake_.desktop.messages.clear();
    EXPECT_FALSE(file_.FileWriteAsString(path, u"text"));
    EXPECT_TRUE(Messages().empty());
    EXPECT_FALSE(file_.FileWriteAsString(path, u"text", false));
    EXPECT_EQ(Messages(), std::vector{ErrorMessage(WritingError(path))});
  }
}

// Comparing.

TEST_F(CFileTest, DeliberateComparesTextsIgnoringCaseAndOneLineEnd) {
  struct Row {
    std::string_view bytes1;
    std::string_view bytes2;
    bool areEqual;
  };
  constexpr Row kRows[] = {
      {"text", "text", true},    {"text", "TEXT\r\n", true},      {"\xE9\xFF", "\xC9\x9F\n", true},
      {"text", "texts", false},  {"text\r\n\r\n", "text", false}, {"\r\n", "\r", true},
      {"a\r\nb", "a\nb", false}, {"text ", "text", false},
  };
  for (const Row& row : kRows) {
    fake_.files.Replace(u"/library/1", row.bytes1);
    fake_.files.Replace(u"/library/2", row.bytes2);
    EXPECT_EQ(file_.CompareFiles(u"/library/1", u"/library/2"), row.areEqual) << row.bytes1 << row.bytes2;
    EXPECT_EQ(file_.CompareFiles(u"/library/2", u"/library/1"), row.areEqual) << row.bytes1 << row.bytes2;
  }
}

TEST_F(CFileTest, DeliberateEmptyFileEqualsNothingNotEvenItself) {
  fake_.files.Replace(kPath, "");
  EXPECT_FALSE(file_.CompareFiles(kPath, kPath));
}

TEST_F(CFileTest, MissingFileEqualsNothing) {
  fake_.files.Replace(kPath, "x");
  EXPECT_FALSE(file_.CompareFiles(kPath, u"/library/missing"));
  EXPECT_FALSE(file_.CompareFiles(u"/library/missing", kPath));
  EXPECT_TRUE(Messages().empty());
}

// Listing.

class ListingTest : public CFileTest {
 protected:
  ListingTest() {
    for (const TextView path : {u"/library/b.txt", u"/library/A.TXT", u"/library/c.txt.bak",
                                u"/library/d.dat", u"/library/.e.txt", u"/library/f", u"/library/txt"}) {
      fake_.files.Replace(path, "x");
    }
    fake_.files.MakeFolder(u"/library/folder.txt");
  }

  BoundedArray<Text> list_;
  std::int32_t count_ = -1;
};

TEST_F(ListingTest, ListsFilesOfAnExtensionHiddenOnesAmongThem) {
  file_.ListFilesMatchingExt(u"/library", u"txt", list_, count_);
  EXPECT_EQ(count_, 3);
  EXPECT_EQ(list_, BoundedArray<Text>(std::vector<Text>{u".e.txt", u"A.TXT", u"b.txt"}));
}

TEST_F(ListingTest, ExtensionMayHoldWildcards) {
  file_.ListFilesMatchingExt(u"/library", u"?a?", list_, count_);
  EXPECT_EQ(count_, 2);
  EXPECT_EQ(list_, BoundedArray<Text>(std::vector<Text>{u"c.txt.bak", u"d.dat"}));
}

TEST_F(ListingTest, NamesReplaceTheContentsOfTheCallersArray) {
  for (const std::int32_t upper : {0, 2, 9}) {
    list_.ReDim({0, upper});
    list_(0) = u"old";
    file_.ListFilesMatchingExt(u"/library", u"txt", list_, count_);
    EXPECT_EQ(count_, 3);
    EXPECT_EQ(list_, BoundedArray<Text>(std::vector<Text>{u".e.txt", u"A.TXT", u"b.txt"}));
  }
}

TEST_F(ListingTest, NamesFillAnArrayWithoutElements) {
  list_ = BoundedArray<Text>::Empty();
  file_.ListFilesMatchingExt(u"/library", u"dat", list_, count_);
  EXPECT_EQ(count_, 1);
  EXPECT_EQ(list_, BoundedArray<Text>(std::vector<Text>{u"d.dat"}));
}

TEST_F(ListingTest, FolderMayStandInTheArrayThatIsFilled) {
  list_.ReDim({0, 0});
  list_(0) = u"/library";
  file_.ListFilesMatchingExt(list_(0), u"dat", list_, count_);
  EXPECT_EQ(list_, BoundedArray<Text>(std::vector<Text>{u"d.dat"}));
}

TEST_F(ListingTest, DeliberateArrayStaysAsItWasWhenNothingMatches) {
  const BoundedArray<Text> before(std::vector<Text>{u"old", u"older"}, 5);
  for (const TextView folder : {u"/library", u"/library/folder.txt", u"/missing", u""}) {
    list_ = before;
    count_ = -1;
    file_.ListFilesMatchingExt(folder, u"none", list_, count_);
    EXPECT_EQ(count_, 0);
    EXPECT_EQ(list_, before);
  }
}

TEST_F(ListingTest, DeliberateNeverDimensionedArrayStaysSoWhenNothingMatches) {
  file_.ListFilesMatchingExt(u"/library", u"none", list_, count_);
  EXPECT_EQ(count_, 0);
  EXPECT_EQ(list_.Rank(), 0);
}

TEST_F(ListingTest, DeliberateArrayThatCannotBeResizedStaysWithTheFirstFileCounted) {
  const BoundedArray<Text> arrays[] = {
      BoundedArray<Text>({1, 3}),
      BoundedArray<Text>({-5, -5}),
      BoundedArray<Text>({0, 1}, {0, 1}),
      BoundedArray<Text>({0, 0}, {0, 0}, {0, 0}),
  };
  for (const BoundedArray<Text>& before : arrays) {
    list_ = before;
    count_ = -1;
    EXPECT_NO_THROW(file_.ListFilesMatchingExt(u"/library", u"txt", list_, count_));
    EXPECT_EQ(count_, 1);
    EXPECT_EQ(list_, before);
  }
  EXPECT_TRUE(Messages().empty());
}

/// Lists what the test says.
class ScriptedFiles : public test::MemoryFiles {
 public:
  std::vector<DirectoryEntry> List(TextView pattern) override {
    patterns.emplace_back(pattern);
    return entries;
  }

  std::vector<Text> patterns;
  std::vector<DirectoryEntry> entries;
};

class ScriptedListingTest : public ::testing::Test {
 protected:
  test::FakePlatform fake_;
  ScriptedFiles files_;
  Platform platform_ = fake_.With(files_);
  CFile file_{platform_};
  BoundedArray<Text> list_;
  std::int32_t count_ = -1;
};

TEST_F(ScriptedListingTest, PatternIsMadeOfFolderAndExtension) {
  file_.ListFilesMatchingExt(u"D:\\data\\", u"t*", list_, count_);
  EXPECT_EQ(files_.patterns, std::vector<Text>{u"D:\\data\\\\*.t*"});
}

TEST_F(ScriptedListingTest, NamesKeepTheOrderOfTheListingWithoutFoldersAndSystemFiles) {
  files_.entries = {
      {u"z.txt"}, {u"folder.txt", true}, {u"m.txt", false, true}, {u"s.txt", false, false, true}, {u"a.txt"}};
  file_.ListFilesMatchingExt(u"D:", u"txt", list_, count_);
  EXPECT_EQ(count_, 3);
  EXPECT_EQ(list_, BoundedArray<Text>(std::vector<Text>{u"z.txt", u"m.txt", u"a.txt"}));
}

TEST_F(ScriptedListingTest, DeliberateListEndsAtADotName) {
  for (const TextView last : {u".", u"..", u""}) {
    files_.entries = {{u"a.txt"}, {Text(last)}, {u"b.txt"}};
    list_ = {};
    file_.ListFilesMatchingExt(u"D:", u"txt", list_, count_);
    EXPECT_EQ(count_, 1);
    EXPECT_EQ(list_, BoundedArray<Text>(std::vector<Text>{u"a.txt"}));
  }
}

TEST_F(ScriptedListingTest, FileExistsWhenAnyEntryIsOrdinary) {
  files_.entries = {{u"folder", true}, {u"hidden", false, true}, {u"system", false, false, true}};
  EXPECT_FALSE(file_.FileExists(u"name"));
  files_.entries.push_back({u"ordinary"});
  EXPECT_TRUE(file_.FileExists(u"name"));
}

TEST_F(ScriptedListingTest, NamesThatCannotBeFilesAreNotLookedFor) {
  files_.entries = {{u"ordinary"}};
  EXPECT_FALSE(file_.FileExists(u""));
  EXPECT_FALSE(file_.FileExists(u"name\\"));
}

}  // namespace
}  // namespace vorquill21
