#include "vorquill21/platform/files_posix.hpp"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/system_posix.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/temporary_folder.hpp"

namespace vorquill21 {
namespace {

using test::AsOrdinaryUser;
using test::ContentOf;
using test::NamesIn;
using test::RaisedNumber;
using test::WriteContent;
using Names = std::vector<std::string>;

/// The real files in a temporary folder in which everybody may do everything.
class PosixFilesTest : public ::testing::Test {
 protected:
  PosixFilesTest() { ::chmod(Folder().c_str(), 0777); }
  ~PosixFilesTest() override { EXPECT_EQ(test::OpenDescriptors(), openDescriptors_); }

  std::string Folder() const { return folder_.Path().string(); }
  std::string At(const std::string& name) const { return Folder() + '/' + name; }
  Text Below(const std::string& name) const { return FromUtf8(At(name)); }

  void Link(const std::string& target, const std::string& name) {
    std::filesystem::create_symlink(target, At(name));
  }

  static struct stat StatusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
  }
  static mode_t ModeOf(const std::string& path) { return StatusOf(path).st_mode & 07777; }

  test::TemporaryFolder folder_;
  std::size_t openDescriptors_ = test::OpenDescriptors();
  FileCalls calls_;
  PosixFiles files_{calls_};
};

TEST_F(PosixFilesTest, ANewFileHasTheModeThatTheUmaskAllows) {
  const mode_t oldMask = ::umask(027);
  files_.Replace(Below("replaced"), "x");
  files_.Append(Below("appended"), "x");
  files_.MakeFolder(Below("folder"));
  ::umask(oldMask);
  EXPECT_EQ(ModeOf(At("replaced")), 0640u);
  EXPECT_EQ(ModeOf(At("appended")), 0640u);
  EXPECT_EQ(ModeOf(At("folder")), 0750u);
}

TEST_F(PosixFilesTest, ReplaceKeepsTheModeAndIsANewFile) {
  for (const mode_t mode : {0600u, 0644u, 0666u, 0755u}) {
    WriteContent(At("a"), "old");
    ::chmod(At("a").c_str(), mode);
    const ino_t before = StatusOf(At("a")).st_ino;
    files_.Replace(Below("a"), "new");
    EXPECT_EQ(ContentOf(At("a")), "new");
    EXPECT_EQ(ModeOf(At("a")), mode);
    EXPECT_NE(StatusOf(At("a")).st_ino, before);
  }
  EXPECT_EQ(NamesIn(Folder()), Names{"a"});
}

TEST_F(PosixFilesTest, ReplaceKeepsTheOwnerWhereItMay) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser may give files away";
  WriteContent(At("a"), "old");
  ASSERT_EQ(::chown(At("a").c_str(), 12345, 54321), 0);
  files_.Replace(Below("a"), "new");
  EXPECT_EQ(StatusOf(At("a")).st_uid, 12345u);
  EXPECT_EQ(StatusOf(At("a")).st_gid, 54321u);
}

TEST_F(PosixFilesTest, ReplaceKeepsTheSetUserBitOfAFileThatKeepsItsOwner) {
  if (::geteuid() != 0) GTEST_SKIP() << "the system takes the bit off a file that others write to";
  for (const mode_t mode : {04755u, 02755u, 06711u}) {
    WriteContent(At("a"), "old");
    ASSERT_EQ(::chown(At("a").c_str(), 12345, 54321), 0);
    ASSERT_EQ(::chmod(At("a").c_str(), mode), 0);
    files_.Replace(Below("a"), "new");
    EXPECT_EQ(ContentOf(At("a")), "new");
    EXPECT_EQ(ModeOf(At("a")), mode);
    EXPECT_EQ(StatusOf(At("a")).st_uid, 12345u);
  }
}

/// Makes the process a member of one group alone, until destroyed.
class MemberOf {
 public:
  explicit MemberOf(gid_t group) : oldGroups_(static_cast<std::size_t>(::getgroups(0, nullptr))) {
    EXPECT_NE(::getgroups(static_cast<int>(oldGroups_.size()), oldGroups_.data()), -1);
    EXPECT_EQ(::setgroups(1, &group), 0);
  }
  MemberOf(const MemberOf&) = delete;
  MemberOf& operator=(const MemberOf&) = delete;
  ~MemberOf() { EXPECT_EQ(::setgroups(oldGroups_.size(), oldGroups_.data()), 0); }

 private:
  std::vector<gid_t> oldGroups_;
};

TEST_F(PosixFilesTest, AFileOfSomebodyElseKeepsTheGroupOfThoseWhoShareIt) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs files of two users";
  constexpr gid_t kSharedGroup = 54321;
  WriteContent(At("a"), "old");
  ASSERT_EQ(::chown(At("a").c_str(), 12345, kSharedGroup), 0);
  ::chmod(At("a").c_str(), 0660);
  {
    const MemberOf group(kSharedGroup);
    AsOrdinaryUser user;
    files_.Replace(Below("a"), "new");
  }
  EXPECT_EQ(ContentOf(At("a")), "new");
  EXPECT_EQ(StatusOf(At("a")).st_uid, 65534u);
  EXPECT_EQ(StatusOf(At("a")).st_gid, kSharedGroup);
  EXPECT_EQ(ModeOf(At("a")), 0660u);
}

TEST_F(PosixFilesTest, AFileOfSomebodyElseLosesItsOwnerButNeverKeepsTheSetUserBit) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs files of two users";
  WriteContent(At("a"), "old");
  ::chmod(At("a").c_str(), 06777);
  {
    AsOrdinaryUser user;
    files_.Replace(Below("a"), "new");
  }
  EXPECT_EQ(ContentOf(At("a")), "new");
  EXPECT_EQ(ModeOf(At("a")), 0777u);
}

TEST_F(PosixFilesTest, ReplaceFollowsLinksAndLeavesThemLinks) {
  std::filesystem::create_directory(At("elsewhere"));
  WriteContent(At("elsewhere/target"), "old");
  Link("elsewhere/target", "relative");
  Link(At("relative"), "absolute");
  Link("elsewhere", "folder");
  for (const char* name : {"relative", "absolute", "folder/target"}) {
    files_.Replace(Below(name), name);
    EXPECT_EQ(ContentOf(At("elsewhere/target")), name);
  }
  EXPECT_TRUE(std::filesystem::is_symlink(At("relative")));
  EXPECT_TRUE(std::filesystem::is_symlink(At("absolute")));
  EXPECT_EQ(NamesIn(At("elsewhere")), Names{"target"});
  EXPECT_EQ(NamesIn(Folder()), (Names{"absolute", "elsewhere", "folder", "relative"}));
}

TEST_F(PosixFilesTest, WritingThroughALinkToNothingMakesWhatItLeadsTo) {
  std::filesystem::create_directory(At("elsewhere"));
  Link("elsewhere/replaced", "first");
  Link("first", "second");
  files_.Replace(Below("second"), "1");
  EXPECT_EQ(ContentOf(At("elsewhere/replaced")), "1");
  Link("elsewhere/appended", "third");
  files_.Append(Below("third"), "2");
  EXPECT_EQ(ContentOf(At("elsewhere/appended")), "2");
  EXPECT_TRUE(std::filesystem::is_symlink(At("second")));
  EXPECT_TRUE(std::filesystem::is_symlink(At("third")));
}

TEST_F(PosixFilesTest, LinksThatLeadNowhereAreErrors) {
  Link("missing/name", "lost");
  Link("loop", "loop");
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("lost"), "x"); }), 76);
  EXPECT_EQ(RaisedNumber([&] { files_.Append(Below("lost"), "x"); }), 76);
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(Below("lost")); }), 53);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("loop"), "x"); }), 52);
  EXPECT_EQ(RaisedNumber([&] { files_.Append(Below("loop"), "x"); }), 52);
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(Below("loop")); }), 52);
  EXPECT_EQ(NamesIn(Folder()), (Names{"loop", "lost"}));
}

TEST_F(PosixFilesTest, AChainMayHaveAsManyLinksAsTheSystemFollows) {
  constexpr int kMostLinks = 40;
  WriteContent(At("0"), "old");
  for (int link = 1; link <= kMostLinks + 1; ++link) Link(std::to_string(link - 1), std::to_string(link));
  const Text longest = Below(std::to_string(kMostLinks));
  const Text tooLong = Below(std::to_string(kMostLinks + 1));
  files_.Replace(longest, "new");
  EXPECT_EQ(ReadWholeFile(files_, longest), "new");
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(tooLong); }), 52);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(tooLong, "newer"); }), 52);
  EXPECT_EQ(ContentOf(At("0")), "new");
  std::filesystem::remove(At("0"));
  EXPECT_EQ(RaisedNumber([&] { files_.Append(tooLong, "newer"); }), 52);
  files_.Append(longest, "made");
  EXPECT_EQ(ContentOf(At("0")), "made");
}

TEST_F(PosixFilesTest, AFileOfSeveralNamesKeepsThemAll) {
  WriteContent(At("a"), "a longer old content");
  std::filesystem::create_hard_link(At("a"), At("b"));
  files_.Replace(Below("a"), "new");
  EXPECT_EQ(ContentOf(At("b")), "new");
  files_.Replace(Below("b"), "newer than new");
  EXPECT_EQ(ContentOf(At("a")), "newer than new");
  EXPECT_EQ(NamesIn(Folder()), (Names{"a", "b"}));
}

TEST_F(PosixFilesTest, AFileOfSeveralNamesCanBecomeEmpty) {
  WriteContent(At("a"), "old");
  std::filesystem::create_hard_link(At("a"), At("b"));
  files_.Replace(Below("a"), "");
  EXPECT_EQ(ContentOf(At("b")), "");
  EXPECT_EQ(StatusOf(At("a")).st_nlink, 2u);
}

TEST_F(PosixFilesTest, AFolderThatTakesNoFilesHasItsFilesWrittenInPlace) {
  std::filesystem::create_directory(At("folder"));
  WriteContent(At("folder/a"), "a longer old content");
  ::chmod(At("folder/a").c_str(), 0666);
  ::chmod(At("folder").c_str(), 0555);
  const ino_t before = StatusOf(At("folder/a")).st_ino;
  {
    AsOrdinaryUser user;
    files_.Replace(Below("folder/a"), "new");
    EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("folder/b"), "new"); }), 70);
    EXPECT_EQ(RaisedNumber([&] { files_.Append(Below("folder/b"), "new"); }), 70);
    EXPECT_EQ(RaisedNumber([&] { files_.MakeFolder(Below("folder/b")); }), 75);
    EXPECT_EQ(RaisedNumber([&] { files_.Delete(Below("folder/a")); }), 70);
  }
  ::chmod(At("folder").c_str(), 0755);
  EXPECT_EQ(ContentOf(At("folder/a")), "new");
  EXPECT_EQ(StatusOf(At("folder/a")).st_ino, before);
  EXPECT_EQ(NamesIn(At("folder")), Names{"a"});
}

TEST_F(PosixFilesTest, AFileThatOnlyItsOwnerMayReplaceIsWrittenInPlace) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs files of two users";
  std::filesystem::create_directory(At("sticky"));
  WriteContent(At("sticky/a"), "old");
  ::chmod(At("sticky/a").c_str(), 0666);
  ::chmod(At("sticky").c_str(), 01777);
  {
    AsOrdinaryUser user;
    files_.Replace(Below("sticky/a"), "new");
  }
  EXPECT_EQ(ContentOf(At("sticky/a")), "new");
  EXPECT_EQ(StatusOf(At("sticky/a")).st_uid, 0u);
  EXPECT_EQ(NamesIn(At("sticky")), Names{"a"});
}

TEST_F(PosixFilesTest, AFolderThatMayNotBeReadStillTakesAReplacement) {
  std::filesystem::create_directory(At("folder"));
  WriteContent(At("folder/a"), "old");
  ::chmod(At("folder/a").c_str(), 0666);
  ::chmod(At("folder").c_str(), 0333);
  {
    AsOrdinaryUser user;
    files_.Replace(Below("folder/a"), "new");
    EXPECT_EQ(RaisedNumber([&] { files_.List(Below("folder/*")); }), 70);
    EXPECT_EQ(files_.List(Below("folder/a")).size(), 1u);
  }
  ::chmod(At("folder").c_str(), 0755);
  EXPECT_EQ(ContentOf(At("folder/a")), "new");
  EXPECT_EQ(NamesIn(At("folder")), Names{"a"});
}

TEST_F(PosixFilesTest, WhatMayNotBeTouchedIsError70) {
  WriteContent(At("readonly"), "old");
  ::chmod(At("readonly").c_str(), 0444);
  WriteContent(At("secret"), "old");
  ::chmod(At("secret").c_str(), 0);
  std::filesystem::create_directory(At("closed"));
  WriteContent(At("closed/a"), "old");
  ::chmod(At("closed").c_str(), 0);
  {
    AsOrdinaryUser user;
    EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("readonly"), "new"); }), 70);
    EXPECT_EQ(RaisedNumber([&] { files_.Append(Below("readonly"), "new"); }), 70);
    EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(Below("secret")); }), 70);
    EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(Below("closed/a")); }), 70);
    EXPECT_EQ(RaisedNumber([&] { files_.List(Below("closed/a")); }), 70);
    EXPECT_EQ(RaisedNumber([&] { files_.RemoveFolder(Below("closed/a")); }), 75);
    EXPECT_FALSE(files_.FolderExists(Below("closed/a")));
    EXPECT_TRUE(files_.FolderExists(Below("closed")));
  }
  ::chmod(At("closed").c_str(), 0755);
  EXPECT_EQ(ContentOf(At("readonly")), "old");
  EXPECT_EQ(NamesIn(Folder()), (Names{"closed", "readonly", "secret"}));
}

TEST_F(PosixFilesTest, DevicesAreWrittenInPlace) {
  files_.Replace(u"/dev/null", "gone");
  files_.Append(u"\\dev\\null", "gone");
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(u"/dev/full", "x"); }), 61);
  EXPECT_EQ(RaisedNumber([&] { files_.Append(u"/dev/full", "x"); }), 61);
  EXPECT_TRUE(S_ISCHR(StatusOf("/dev/null").st_mode));
  EXPECT_TRUE(S_ISCHR(StatusOf("/dev/full").st_mode));
}

TEST_F(PosixFilesTest, WhatHasNoLengthIsReadToItsEnd) {
  EXPECT_EQ(files_.OpenForReading(u"/dev/zero")->Length(), 0u);
  EXPECT_EQ(ReadWholeFile(files_, u"/dev/null"), "");
  EXPECT_NE(ReadWholeFile(files_, u"/proc/self/cmdline"), "");

  ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0666), 0);
  const std::string sent(300'000, 'p');
  std::thread writer([&] { files_.Replace(Below("pipe"), sent); });
  const std::string received = ReadWholeFile(files_, Below("pipe"));
  writer.join();
  EXPECT_EQ(received, sent);
  EXPECT_TRUE(S_ISFIFO(StatusOf(At("pipe")).st_mode));

  std::thread secondWriter([&] { files_.Replace(Below("pipe"), "0123456789"); });
  const auto reader = files_.OpenForReading(Below("pipe"));
  reader->Skip(7);
  EXPECT_EQ(ReadRest(*reader, 0), "789");
  secondWriter.join();
}

TEST_F(PosixFilesTest, ListingsTellHiddenAndSystemEntries) {
  WriteContent(At("file"), "");
  WriteContent(At(".hidden"), "");
  std::filesystem::create_directory(At("folder"));
  ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0666), 0);
  Link("file", "to file");
  Link("folder", "to folder");
  Link("missing", "to nothing");
  struct Expected {
    Text name;
    bool isFolder;
    bool isHidden;
    bool isSystem;
  };
  const Expected expected[] = {{u".hidden", false, true, false},   {u"file", false, false, false},
                               {u"folder", true, false, false},    {u"pipe", false, false, true},
                               {u"to file", false, false, false},  {u"to folder", true, false, false},
                               {u"to nothing", false, false, true}};
  const auto entries = files_.List(Below("*"));
  ASSERT_EQ(entries.size(), std::size(expected));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto alone = files_.List(folder_.Below(expected[i].name));
    ASSERT_EQ(alone.size(), 1u) << ToUtf8(expected[i].name);
    for (const DirectoryEntry& entry : {entries[i], alone[0]}) {
      EXPECT_EQ(entry.name, expected[i].name);
      EXPECT_EQ(entry.isFolder, expected[i].isFolder) << ToUtf8(entry.name);
      EXPECT_EQ(entry.isHidden, expected[i].isHidden) << ToUtf8(entry.name);
      EXPECT_EQ(entry.isSystem, expected[i].isSystem) << ToUtf8(entry.name);
    }
  }
  EXPECT_TRUE(files_.FolderExists(Below("to folder")));
  EXPECT_FALSE(files_.FolderExists(Below("to nothing")));
}

TEST_F(PosixFilesTest, DeleteTakesALinkToAFileAndLeavesTheFile) {
  WriteContent(At("file"), "x");
  Link("file", "link");
  files_.Delete(Below("link"));
  EXPECT_EQ(NamesIn(Folder()), Names{"file"});
}

TEST_F(PosixFilesTest, PlainNamesMatchAsTheFileSystemDoes) {
  WriteContent(At("Name"), "x");
  EXPECT_EQ(files_.List(Below("Name")).size(), 1u);
  EXPECT_TRUE(files_.List(Below("NAME")).empty());
  EXPECT_EQ(files_.List(Below("NAM?")).size(), 1u);
}

TEST_F(PosixFilesTest, NamesThatDifferInCaseAloneHaveAFixedOrder) {
  for (const char* name : {"b", "B", "a", "A"}) WriteContent(At(name), "x");
  std::vector<Text> names;
  for (const DirectoryEntry& entry : files_.List(Below("*"))) names.push_back(entry.name);
  EXPECT_EQ(names, (std::vector<Text>{u"A", u"a", u"B", u"b"}));
}

TEST_F(PosixFilesTest, NamesThatAreNoUtf8Survive) {
  const std::string name = "\xFF\xC3.txt";
  WriteContent(At(name), "x");
  const auto entries = files_.List(Below("*.txt"));
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(ReadWholeFile(files_, folder_.Below(entries[0].name)), "x");
  files_.Delete(Below("*.txt"));
  EXPECT_TRUE(NamesIn(Folder()).empty());
}

TEST_F(PosixFilesTest, OnlyALetterBeforeAColonNamesADrive) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.Path());
  for (const char16_t unit : {u'0', u'@', u'[', u'`', u'{', u'\u00E4'}) {
    const Text name = Text(1, unit) + u":";
    files_.Replace(name, "x");
    EXPECT_EQ(ReadWholeFile(files_, name), "x");
    files_.Delete(name);
  }
  for (const char16_t unit : {u'A', u'Z', u'a', u'z'}) {
    const Text name = Text(1, unit) + u":";
    EXPECT_EQ(RaisedNumber([&] { files_.Replace(name, "x"); }), 76);
  }
  std::filesystem::current_path(before);
}

TEST_F(PosixFilesTest, NamesTooLongAreError52) {
  const std::string longName(300, 'n');
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below(longName), "x"); }), 52);
  EXPECT_EQ(RaisedNumber([&] { files_.Append(Below(longName), "x"); }), 52);
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(Below(longName)); }), 52);
  EXPECT_EQ(RaisedNumber([&] { files_.MakeFolder(Below(longName)); }), 52);
  files_.Replace(Below(std::string(255, 'n')), "x");
  EXPECT_EQ(NamesIn(Folder()), Names{std::string(255, 'n')});
}

TEST_F(PosixFilesTest, RelativePathsBeginAtTheWorkingFolder) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(Folder());
  files_.Replace(u"a", "1");
  files_.Append(u"a", "2");
  files_.MakeFolder(u"folder");
  const std::string content = ReadWholeFile(files_, u"a");
  const auto entries = files_.List(u"*");
  const auto missing = RaisedNumber([&] { files_.OpenForReading(u"missing"); });
  files_.Delete(u"a");
  std::filesystem::current_path(before);
  EXPECT_EQ(content, "12");
  EXPECT_EQ(entries.size(), 2u);
  EXPECT_EQ(missing, 53);
  EXPECT_EQ(NamesIn(Folder()), Names{"folder"});
}

TEST_F(PosixFilesTest, APathThatEndsInASeparatorIsNoFile) {
  WriteContent(At("file"), "old");
  std::filesystem::create_directory(At("folder"));
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("file/"), "x"); }), 76);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("missing/"), "x"); }), 76);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("folder/"), "x"); }), 70);
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(Below("file/")); }), 76);
  EXPECT_EQ(NamesIn(Folder()), (Names{"file", "folder"}));
  EXPECT_EQ(ContentOf(At("file")), "old");
}

TEST_F(PosixFilesTest, RootsAndWorkingFoldersAreNotMadeOrRemoved) {
  EXPECT_EQ(RaisedNumber([&] { files_.MakeFolder(u"/"); }), 75);
  EXPECT_EQ(RaisedNumber([&] { files_.MakeFolder(u"."); }), 75);
  EXPECT_EQ(RaisedNumber([&] { files_.RemoveFolder(u"/"); }), 75);
  EXPECT_NE(RaisedNumber([&] { files_.RemoveFolder(u"."); }), 0);
}

TEST_F(PosixFilesTest, AReaderKeepsTheOldContentWhileItIsReplaced) {
  WriteContent(At("a"), "old");
  const auto reader = files_.OpenForReading(Below("a"));
  files_.Replace(Below("a"), "new");
  std::array<char, 10> buffer;
  EXPECT_EQ(std::string(buffer.data(), reader->Read(buffer)), "old");
}

TEST_F(PosixFilesTest, ALeftOverTemporaryFileIsNoHindranceAndStays) {
  const std::string leftOver = ".vorquill21-" + std::to_string(::getpid()) + "-0.tmp";
  WriteContent(At(leftOver), "of a program that crashed");
  files_.Replace(Below("a"), "new");
  EXPECT_EQ(ContentOf(At("a")), "new");
  EXPECT_EQ(NamesIn(Folder()), (Names{leftOver, "a"}));
}

TEST_F(PosixFilesTest, ManyThreadsReplaceOneFileAndItIsAlwaysWhole) {
  WriteContent(At("a"), std::string(1000, 'a'));
  std::vector<std::thread> writers;
  for (const char letter : {'b', 'c', 'd'}) {
    writers.emplace_back([this, letter] {
      for (int i = 0; i < 30; ++i) files_.Replace(Below("a"), std::string(1000, letter));
    });
  }
  for (int i = 0; i < 300; ++i) {
    const std::string content = ReadWholeFile(files_, Below("a"));
    ASSERT_EQ(content, std::string(1000, content.empty() ? '?' : content[0]));
  }
  for (std::thread& writer : writers) writer.join();
  EXPECT_EQ(NamesIn(Folder()), Names{"a"});
}

TEST_F(PosixFilesTest, ManyThreadsAppendWholeLines) {
  std::vector<std::thread> writers;
  for (const char letter : {'a', 'b', 'c'}) {
    writers.emplace_back([this, letter] {
      for (int i = 0; i < 200; ++i) files_.Append(Below("log"), std::string(50, letter) + '\n');
    });
  }
  for (std::thread& writer : writers) writer.join();
  const std::string content = ContentOf(At("log"));
  ASSERT_EQ(content.size(), 3u * 200u * 51u);
  for (std::size_t at = 0; at < content.size(); at += 51) {
    EXPECT_EQ(content.substr(at, 51), std::string(50, content[at]) + '\n');
  }
}

}  // namespace
}  // namespace vorquill21
