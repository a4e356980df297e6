#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>

#include "tests/files/self_test_entry.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_error.hpp"
#include "vorquill21/files/file.hpp"

namespace vorquill21 {
namespace {

using test::ErrorMessage;
using test::ErrorRaisedBy;
using test::RaisedError;
using test::RunSelfTest;

/// CFile on the system's own files, in a temporary folder that is removed again; message boxes are recorded.
class NativeFileTest : public ::testing::Test {
 protected:
  NativeFileTest() {
    const std::string name = "vorquill21-file-test-" + std::to_string(std::random_device()());
    root_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directory(root_);
    process_.libraryFolder = root_.u16string();
  }
  ~NativeFileTest() override { std::filesystem::remove_all(root_); }

  /// A name below the temporary folder, with "\" as separator.
  Text Below(TextView name) const { return root_.u16string().append(u"\\").append(name); }

  Files& SystemFiles() { return platform_.GetFiles(); }

  std::filesystem::path root_;
  test::RecordingDesktop desktop_;
  test::FixedProcess process_;
  test::MemorySettings settings_;
  Platform platform_{Platform::Native().GetFiles(), desktop_, Platform::Native().GetLocale(), process_,
                     settings_};
  CFile file_{platform_};
};

TEST_F(NativeFileTest, WritesAndReadsBackOnTheRealSystem) {
  const Text path = Below(u"data.txt");
  EXPECT_FALSE(file_.FileExists(path));
  EXPECT_TRUE(file_.FileWriteAsString(path, u"one\r\ntwo", false));
  EXPECT_TRUE(file_.FileExists(path));
  EXPECT_EQ(ReadWholeFile(SystemFiles(), path), "one\r\ntwo\r\n");
  Text text;
  EXPECT_TRUE(file_.FileReadAsString(path, text, false));
  EXPECT_EQ(text, u"one\r\ntwo");
  EXPECT_TRUE(desktop_.messages.empty());
}

TEST_F(NativeFileTest, EveryByteOfTheCodePageSurvivesOnTheRealSystem) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  if (FromCodePage(platform_.GetLocale(), bytes).size() != bytes.size()) {
    GTEST_SKIP() << "the code page of this system is not one of single bytes";
  }
  const Text path = Below(u"bytes.bin");
  SystemFiles().Replace(path, bytes);
  Text text;
  ASSERT_TRUE(file_.FileReadAsString(path, text, false));
  EXPECT_TRUE(file_.FileWriteAsString(path, text, false));
  EXPECT_EQ(ReadWholeFile(SystemFiles(), path), bytes + "\r\n");
}

TEST_F(NativeFileTest, FilesThatCannotBeReadOnTheRealSystem) {
  Text text = u"before";
  EXPECT_FALSE(file_.FileReadAsString(Below(u"missing.txt"), text, false));
  EXPECT_EQ(text, u"");
  EXPECT_TRUE(desktop_.messages.empty());

  const Text empty = Below(u"empty.txt");
  SystemFiles().Replace(empty, "");
  EXPECT_FALSE(file_.FileReadAsString(empty, text, false));
  EXPECT_EQ(desktop_.messages, std::vector{ErrorMessage(u"An error occurred while reading file: " + empty)});
}

TEST_F(NativeFileTest, FilesThatCannotBeWrittenOnTheRealSystem) {
  const Text path = Below(u"missing\\data.txt");
  EXPECT_FALSE(file_.FileWriteAsString(path, u"text", false));
  EXPECT_EQ(desktop_.messages, std::vector{ErrorMessage(u"An error occurred while writing file: " + path)});
}

TEST_F(NativeFileTest, FoldersOnTheRealSystem) {
  EXPECT_TRUE(file_.DirExists(Below(u"")));
  EXPECT_TRUE(file_.DirMake(Below(u"new")));
  EXPECT_TRUE(file_.DirMake(Below(u"new")));
  EXPECT_TRUE(file_.DirExists(Below(u"new")));
  EXPECT_FALSE(file_.FileExists(Below(u"new")));
  EXPECT_FALSE(file_.DirMake(Below(u"missing\\new")));
  EXPECT_FALSE(file_.DirMake(u""));

  file_.DirMakeNested(Below(u"a\\b\\c"));
  EXPECT_TRUE(file_.DirExists(Below(u"a\\b\\c")));
  file_.DirMakeNested(Below(u"a\\b\\c"));
  file_.DirMakeNested(Below(u"a\\d\\"));
  EXPECT_TRUE(file_.DirExists(Below(u"a\\d")));
}

TEST_F(NativeFileTest, NestedFoldersBelowAFileAreError76OnTheRealSystem) {
  SystemFiles().Replace(Below(u"file"), "x");
  EXPECT_EQ(ErrorRaisedBy([&] { file_.DirMakeNested(Below(u"file\\folder")); }),
            (RaisedError{76, u"", u"Path not found"}));
}

TEST_F(NativeFileTest, ListsFilesOnTheRealSystem) {
  for (const TextView name : {u"b.tt1", u"a.tt1", u"c.TT1", u"d.tt2"}) {
    ASSERT_TRUE(file_.FileWriteAsString(Below(name), u"0"));
  }
  ASSERT_TRUE(file_.DirMake(Below(u"folder.tt1")));
  BoundedArray<Text> names;
  std::int32_t count = -1;
  file_.ListFilesMatchingExt(Below(u""), u"tt1", names, count);
  EXPECT_EQ(count, 3);
  std::ranges::sort(names.Elements());
  EXPECT_EQ(names, BoundedArray<Text>(std::vector<Text>{u"a.tt1", u"b.tt1", u"c.TT1"}));

  const BoundedArray<Text> before = names;
  file_.ListFilesMatchingExt(Below(u""), u"tt3", names, count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(names, before);
}

TEST_F(NativeFileTest, FileOfANameWithWildcardsExistsOnTheRealSystem) {
  ASSERT_TRUE(file_.FileWriteAsString(Below(u"data.txt"), u"0"));
  EXPECT_TRUE(file_.FileExists(Below(u"*.TXT")));
  EXPECT_TRUE(file_.FileExists(Below(u"dat?.txt")));
  EXPECT_FALSE(file_.FileExists(Below(u"*.dat")));
  EXPECT_FALSE(file_.FileExists(Below(u"data.txt\\")));
}

TEST_F(NativeFileTest, ComparesFilesOnTheRealSystem) {
  SystemFiles().Replace(Below(u"1"), "Text");
  SystemFiles().Replace(Below(u"2"), "tEXT\r\n");
  SystemFiles().Replace(Below(u"3"), "other");
  EXPECT_TRUE(file_.CompareFiles(Below(u"1"), Below(u"2")));
  EXPECT_FALSE(file_.CompareFiles(Below(u"1"), Below(u"3")));
}

TEST_F(NativeFileTest, SelfTestPassesOnTheRealSystem) {
  FailedTests failedTests;
  RunSelfTest(file_, failedTests);
  EXPECT_EQ(failedTests, FailedTests());
  EXPECT_FALSE(file_.FileExists(Below(u"self test\\delme.txt")));
  EXPECT_FALSE(file_.FileExists(Below(u"self test\\*.tt1")));
  EXPECT_FALSE(file_.DirExists(Below(u"DirMakeTest")));
}

}  // namespace
}  // namespace vorquill21
