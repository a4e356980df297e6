#include "vorquill21/platform/files_windows.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <deque>
#include <optional>

#include "tests/platform/file_folder_windows.hpp"
#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;

class WindowsFilesTest : public ::testing::Test {
 protected:
  std::vector<Text> NamesListed(TextView pattern) {
    std::vector<Text> names;
    for (const DirectoryEntry& entry : files_.List(folder_.Below(pattern))) names.push_back(entry.name);
    return names;
  }

  test::FileFolder folder_;
  FileCalls calls_;
  WindowsFiles files_{calls_};
};

/// A handle of the test's own on a file.
class HeldFile {
 public:
  HeldFile(const std::wstring& path, DWORD sharing)
      : handle_(CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {}
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;
  ~HeldFile() { CloseHandle(handle_); }

  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE handle_;
};

TEST_F(WindowsFilesTest, BothSeparatorsNameTheSameFile) {
  files_.MakeFolder(folder_.Below(u"sub"));
  files_.Replace(folder_.Below(u"sub/a.txt"), "one");
  EXPECT_EQ(ReadWholeFile(files_, folder_.Below(u"sub\\a.txt")), "one");
  EXPECT_TRUE(files_.FolderExists(folder_.Path().u16string() + u"/sub/"));
}

TEST_F(WindowsFilesTest, AnExtensionOfThreeLettersFindsNoLongerOne) {
  for (const TextView name : {u"a.tt1", u"b.tt1x", u"c.TT1", u"d.tt"}) folder_.Write(name, "0");
  EXPECT_EQ(NamesListed(u"*.tt1"), (std::vector<Text>{u"a.tt1", u"c.TT1"}));
}

TEST_F(WindowsFilesTest, StarDotStarNeedsADot) {
  for (const TextView name : {u"plain", u"with.dot"}) folder_.Write(name, "0");
  EXPECT_EQ(NamesListed(u"*.*"), (std::vector<Text>{u"with.dot"}));
  EXPECT_EQ(NamesListed(u"*"), (std::vector<Text>{u"plain", u"with.dot"}));
}

TEST_F(WindowsFilesTest, CharactersThatNoNameHoldsFindNothing) {
  folder_.Write(u"a.txt", "0");
  for (const TextView pattern : {u"<.txt", u"a>txt", u"a\"txt", u"<", u">.*"}) {
    EXPECT_EQ(NamesListed(pattern), std::vector<Text>()) << ToUtf8(pattern);
  }
}

TEST_F(WindowsFilesTest, ABracketInAPatternIsItself) {
  for (const TextView name : {u"[a].txt", u"a.txt"}) folder_.Write(name, "0");
  EXPECT_EQ(NamesListed(u"[a]*"), (std::vector<Text>{u"[a].txt"}));
}

TEST_F(WindowsFilesTest, NamesOutsideTheCodePageAreFoundAndRead) {
  constexpr TextView kName = u"\u6570\u636E \u0416.txt";
  files_.Replace(folder_.Below(kName), "wide");
  EXPECT_EQ(NamesListed(u"*.txt"), std::vector<Text>{Text(kName)});
  EXPECT_EQ(ReadWholeFile(files_, folder_.Below(kName)), "wide");
}

TEST_F(WindowsFilesTest, AFileHeldWithoutSharingIsDenied) {
  folder_.Write(u"a.txt", "old");
  const Text path = folder_.Below(u"a.txt");
  const HeldFile held(folder_.WideBelow(u"a.txt"), 0);
  ASSERT_TRUE(held.IsOpen());
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(path); }), kPermissionDenied);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(path, "new"); }), kPermissionDenied);
  EXPECT_EQ(RaisedNumber([&] { files_.Append(path, "new"); }), kPermissionDenied);
  EXPECT_EQ(RaisedNumber([&] { files_.Delete(path); }), kPermissionDenied);
  EXPECT_EQ(folder_.Names(), std::vector<Text>{u"a.txt"});
}

TEST_F(WindowsFilesTest, AFileThatCannotBeRenamedOverIsWrittenInPlace) {
  folder_.Write(u"a.txt", "old content");
  const HeldFile reader(folder_.WideBelow(u"a.txt"), FILE_SHARE_READ | FILE_SHARE_WRITE);
  ASSERT_TRUE(reader.IsOpen());
  files_.Replace(folder_.Below(u"a.txt"), "new");
  EXPECT_EQ(folder_.Bytes(u"a.txt"), "new");
  EXPECT_EQ(folder_.Names(), std::vector<Text>{u"a.txt"});
}

TEST_F(WindowsFilesTest, AllNamesOfAFileSeeItsNewContent) {
  folder_.Write(u"a.txt", "old");
  ASSERT_TRUE(
      CreateHardLinkW(folder_.WideBelow(u"b.txt").c_str(), folder_.WideBelow(u"a.txt").c_str(), nullptr));
  for (const std::string_view bytes : {"longer than before", "short", ""}) {
    files_.Replace(folder_.Below(u"a.txt"), bytes);
    EXPECT_EQ(folder_.Bytes(u"b.txt"), bytes);
  }
}

TEST_F(WindowsFilesTest, ADeviceTakesWhatIsWritten) {
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(u"NUL", "bytes"); }), 0);
  EXPECT_EQ(RaisedNumber([&] { files_.Append(u"NUL", "bytes"); }), 0);
}

TEST_F(WindowsFilesTest, ReplacingKeepsTheAttributes) {
  folder_.Write(u"a.txt", "old");
  const std::wstring path = folder_.WideBelow(u"a.txt");
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
  const DWORD before = GetFileAttributesW(path.c_str());
  files_.Replace(folder_.Below(u"a.txt"), "new");
  EXPECT_EQ(folder_.Bytes(u"a.txt"), "new");
  EXPECT_EQ(GetFileAttributesW(path.c_str()), before);
}

TEST_F(WindowsFilesTest, ReplacingKeepsThePermissions) {
  folder_.Write(u"a.txt", "old");
  const std::wstring path = folder_.WideBelow(u"a.txt");
  const auto permissions = [&path] {
    std::string bytes(4096, '\0');
    DWORD length = 0;
    EXPECT_TRUE(GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, bytes.data(),
                                 static_cast<DWORD>(bytes.size()), &length));
    bytes.resize(length);
    return bytes;
  };
  // Everyone may do everything: not what a new file gets.
  SECURITY_DESCRIPTOR open;
  ASSERT_TRUE(InitializeSecurityDescriptor(&open, SECURITY_DESCRIPTOR_REVISION));
  ASSERT_TRUE(SetSecurityDescriptorDacl(&open, TRUE, nullptr, FALSE));
  const std::string ofNewFile = permissions();
  ASSERT_TRUE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, &open));
  const std::string before = permissions();
  files_.Replace(folder_.Below(u"a.txt"), "new");
  EXPECT_EQ(folder_.Bytes(u"a.txt"), "new");
  EXPECT_EQ(permissions(), before);
  EXPECT_NE(before, ofNewFile) << "the volume keeps no permissions: nothing was shown";
}

TEST_F(WindowsFilesTest, APathThatHoldsANulIsABadName) {
  const Text path = folder_.Below(TextView(u"a\0b", 3));
  folder_.Write(u"a", "kept");
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(path); }), kBadFileName);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(path, ""); }), kBadFileName);
  EXPECT_EQ(RaisedNumber([&] { files_.Append(path, ""); }), kBadFileName);
  EXPECT_EQ(RaisedNumber([&] { files_.Delete(path); }), kBadFileName);
  EXPECT_EQ(RaisedNumber([&] { files_.MakeFolder(path); }), kBadFileName);
  EXPECT_EQ(RaisedNumber([&] { files_.RemoveFolder(path); }), kBadFileName);
  EXPECT_FALSE(files_.FolderExists(path));
  EXPECT_EQ(folder_.Bytes(u"a"), "kept");
}

TEST_F(WindowsFilesTest, RootsAndTheEmptyNameCountAsExistingFolders) {
  for (const TextView root : {u"", u"\\", u"C:\\", u"C:"}) {
    EXPECT_EQ(RaisedNumber([&] { files_.MakeFolder(root); }), kPathFileAccess) << ToUtf8(root);
  }
}

TEST_F(WindowsFilesTest, AMissingDriveIsAMissingPath) {
  for (const TextView path : {u"Q:", u"Q:\\a", u"Q:\\a\\b"}) {
    EXPECT_EQ(RaisedNumber([&] { files_.MakeFolder(path); }), kPathNotFound) << ToUtf8(path);
  }
  EXPECT_EQ(RaisedNumber([&] { files_.OpenForReading(u"Q:\\a.txt"); }), kPathNotFound);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(u"Q:\\a.txt", ""); }), kPathNotFound);
  EXPECT_FALSE(files_.FolderExists(u"Q:\\"));
  EXPECT_TRUE(files_.List(u"Q:\\*").empty());
}

/// Finds what the test says instead of what is there.
class ScriptedListing : public FileCalls {
 public:
  NativeHandle FindFirst(const std::wstring&, FoundName& found) override {
    return FindNext(this, found) ? this : nullptr;
  }
  bool FindNext(NativeHandle, FoundName& found) override {
    if (names.empty()) {
      SetLastError(ERROR_NO_MORE_FILES);
      return false;
    }
    found = names.front();
    names.pop_front();
    return true;
  }
  void FindClose(NativeHandle) override {}

  std::deque<FoundName> names;
};

TEST(WindowsListingTest, AttributesTellFoldersAndHiddenAndSystemFiles) {
  ScriptedListing calls;
  calls.names = {{u".", FILE_ATTRIBUTE_DIRECTORY},
                 {u"..", FILE_ATTRIBUTE_DIRECTORY},
                 {u"folder", FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_ARCHIVE},
                 {u"hidden", FILE_ATTRIBUTE_HIDDEN},
                 {u"ordinary", FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY},
                 {u"system", FILE_ATTRIBUTE_SYSTEM}};
  const std::vector<DirectoryEntry> entries = WindowsFiles(calls).List(u"C:\\any\\*");
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(entries[0].name, u"folder");
  EXPECT_TRUE(entries[0].isFolder && !entries[0].isHidden && !entries[0].isSystem);
  EXPECT_TRUE(!entries[1].isFolder && entries[1].isHidden && !entries[1].isSystem);
  EXPECT_TRUE(entries[2].IsOrdinaryFile());
  EXPECT_TRUE(!entries[3].isFolder && !entries[3].isHidden && entries[3].isSystem);
}

TEST(WindowsListingTest, AShortNameFindsNothingByWildcard) {
  ScriptedListing calls;
  calls.names = {{u"a long name.text", FILE_ATTRIBUTE_ARCHIVE}};  // found as ALONGN~1.TEX
  EXPECT_TRUE(WindowsFiles(calls).List(u"C:\\any\\*~1.*").empty());
}

/// Says that a file lies elsewhere, as a link does, or nowhere to be told.
class LinkedCalls : public FileCalls {
 public:
  std::optional<std::wstring> FinalPath(NativeHandle) override { return finalPath; }

  std::optional<std::wstring> finalPath;
};

TEST(WindowsLinkTest, ReplacingFollowsALinkToItsEnd) {
  const test::FileFolder folder;
  folder.Write(u"link", "seen through the link");
  folder.Write(u"end", "old");
  LinkedCalls calls;
  calls.finalPath = folder.WideBelow(u"end");
  WindowsFiles(calls).Replace(folder.Below(u"link"), "new");
  EXPECT_EQ(folder.Bytes(u"end"), "new");
  EXPECT_EQ(folder.Bytes(u"link"), "seen through the link");
  EXPECT_EQ(folder.Names(), (std::vector<Text>{u"end", u"link"}));
}

TEST(WindowsLinkTest, AFileWhoseEndIsUnknownIsWrittenInPlace) {
  const test::FileFolder folder;
  folder.Write(u"a", "old");
  LinkedCalls calls;
  WindowsFiles(calls).Replace(folder.Below(u"a"), "new");
  EXPECT_EQ(folder.Bytes(u"a"), "new");
  EXPECT_EQ(folder.Names(), std::vector<Text>{u"a"});
}

/// A link whose end is missing: there, but not to be opened until it is made.
class DanglingCalls : public FileCalls {
 public:
  bool IsThere(const std::wstring&) override { return true; }
  NativeHandle Make(const std::wstring&, std::uint32_t) override {
    ADD_FAILURE() << "a link must not be replaced by a file";
    return nullptr;
  }
};

TEST(WindowsLinkTest, ALinkToNothingHasItsEndMade) {
  const test::FileFolder folder;
  DanglingCalls calls;
  WindowsFiles(calls).Replace(folder.Below(u"end"), "new");
  EXPECT_EQ(folder.Bytes(u"end"), "new");
}

}  // namespace
}  // namespace vorquill21
