#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/for_each_shortage.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/files/os_utils.hpp"

namespace vorquill21 {
namespace {

using test::ErrorMessage;
using test::ForEachShortage;
using test::MemoryShortage;
using test::ShownMessage;

constexpr TextView kPath = u"/library/a file whose name needs memory.txt";
constexpr TextView kOtherPath = u"/library/some file whose name needs memory.txt";
constexpr TextView kFolder = u"/library/a folder whose name needs memory";
constexpr TextView kBackslashes =
    u"D:\\a folder whose name needs memory\\a name that needs memory.extension of length";

/// An operation that is short of memory; true when it did all of its work.
using Operation = bool (*)(const CFile& file, MemoryShortage& shortage);

template <bool isSilent>
bool Reads(const CFile& file, MemoryShortage& shortage) {
  Text text = u"the text that the caller had before";
  const bool isRead = shortage.During([&] { return file.FileReadAsString(kPath, text, isSilent); });
  EXPECT_EQ(text, isRead ? u"the content of a file" : u"");
  return isRead;
}

template <bool isSilent>
bool Writes(const CFile& file, MemoryShortage& shortage) {
  return shortage.During(
      [&] { return file.FileWriteAsString(kPath, u"a new text that needs memory", isSilent); });
}

bool Lists(const CFile& file, MemoryShortage& shortage) {
  BoundedArray<Text> names;
  std::int32_t count = -1;
  shortage.During([&] { file.ListFilesMatchingExt(u"/library", u"txt", names, count); });
  const TextView expected[] = {kPath.substr(9), kOtherPath.substr(9)};
  EXPECT_TRUE(count >= 0 && count <= 2) << count;
  for (std::size_t i = 0; i < names.Elements().size(); ++i) EXPECT_EQ(names.Elements()[i], expected[i]);
  return count == 2 && names.Elements().size() == 2;
}

bool Opens(const CFile& file, MemoryShortage& shortage) {
  Text message;
  const bool isOpened = shortage.During([&] { return file.OpenDoc(kPath, &message); });
  EXPECT_TRUE(message.empty() || message == u"Unknown error") << ToUtf8(message);
  return isOpened;
}

bool Picks(const CFile& file, MemoryShortage& shortage) {
  Text folder = u"before";
  shortage.During([&] { file.BrowseForFolder(0, u"a title that needs memory of its own", folder); });
  EXPECT_TRUE(folder == u"before" || folder == kFolder);
  return folder == kFolder;
}

/// One of the members that take a path apart: all of its result, or nothing.
template <Text (CFile::*member)(TextView) const>
bool Parses(const CFile& file, MemoryShortage& shortage) {
  const Text whole = (file.*member)(kBackslashes);
  const Text text = shortage.During([&] { return (file.*member)(kBackslashes); });
  EXPECT_TRUE(text.empty() || whole.starts_with(text));
  return text == whole;
}

const std::vector<std::pair<std::string, Operation>> kOperations = {
    {"BrowseForFolder", Picks},
    {"CompareFiles",
     [](const CFile& file, MemoryShortage& shortage) {
       return shortage.During([&] { return file.CompareFiles(kPath, kOtherPath); });
     }},
    {"Crc32Make",
     [](const CFile& file, MemoryShortage& shortage) {
       const Text text(40'000, u'x');
       const Text checksum = shortage.During([&] { return file.Crc32Make(text); });
       EXPECT_TRUE(checksum.empty() || checksum == u"73CA5D47");
       return !checksum.empty();
     }},
    {"DirExists",
     [](const CFile& file, MemoryShortage& shortage) {
       return shortage.During([&] { return file.DirExists(u"/library/"); });
     }},
    {"DirMake",
     [](const CFile& file, MemoryShortage& shortage) {
       return shortage.During([&] { return file.DirMake(kFolder); });
     }},
    {"FileExists",
     [](const CFile& file, MemoryShortage& shortage) {
       return shortage.During([&] { return file.FileExists(kPath); });
     }},
    {"FileReadAsString", Reads<true>},
    {"FileReadAsStringWithMessage", Reads<false>},
    {"FileWriteAsString", Writes<true>},
    {"FileWriteAsStringWithMessage", Writes<false>},
    {"ListFilesMatchingExt", Lists},
    {"OpenDoc", Opens},
    {"ParseFileDir", Parses<&CFile::ParseFileDir>},
    {"ParseFileExt", Parses<&CFile::ParseFileExt>},
    {"ParseFileName", Parses<&CFile::ParseFileName>},
    {"ParseFileTitle", Parses<&CFile::ParseFileTitle>},
};

/// A platform with two files.
struct Setting {
  Setting() {
    fake.files.Replace(kPath, "the content of a file\r\n");
    fake.files.Replace(kOtherPath, "the content of a file");
    fake.desktop.browsedFolder = Text(kFolder);
    fake.desktop.messages.reserve(10);
  }

  test::FakePlatform fake;
  CFile file{fake.platform};
};

class CFileMemoryTest : public ::testing::TestWithParam<std::pair<std::string, Operation>> {};
INSTANTIATE_TEST_SUITE_P(Every, CFileMemoryTest, ::testing::ValuesIn(kOperations),
                         [](const auto& test) { return test.param.first; });

TEST_P(CFileMemoryTest, AShortageIsAFailureLikeAnyOtherAndRaisesNothing) {
  const ShownMessage kReading = ErrorMessage(Text(u"An error occurred while reading file: ").append(kPath));
  const ShownMessage kWriting = ErrorMessage(Text(u"An error occurred while writing file: ").append(kPath));
  ForEachShortage([&](MemoryShortage& shortage) {
    Setting setting;
    const bool isDone = GetParam().second(setting.file, shortage);
    EXPECT_TRUE(isDone || shortage.Hit());
    EXPECT_EQ(setting.fake.files.OpenReaders(), 0);
    EXPECT_LE(setting.fake.desktop.messages.size(), isDone ? 0u : 1u);
    for (const ShownMessage& message : setting.fake.desktop.messages) {
      EXPECT_TRUE(message == kReading || message == kWriting);
    }
    const bool isRewritten = isDone && GetParam().first.starts_with("FileWrite");
    EXPECT_EQ(setting.fake.files.Content(kPath),
              isRewritten ? "a new text that needs memory\r\n" : "the content of a file\r\n");
  });
}

TEST(CFileMemoryUseTest, Crc32MakeTakesMemoryForABlockOfTheText) {
  test::FakePlatform fake;
  const CFile file(fake.platform);
  const Text text(4'000'000, u'x');
  EXPECT_LE(test::BytesAskedBy([&] { file.Crc32Make(text); }), 100'000u);
}

TEST(COSUtilsMemoryTest, AShortageLeavesTheReasonOutAndRaisesNothing) {
  test::FakePlatform fake;
  fake.desktop.specialFolders[eSpecialFolder_PERSONAL] = kFolder;
  const COSUtils utils(fake.platform);
  ForEachShortage([&](MemoryShortage& shortage) {
    Text path = u"what the caller had there before";
    const bool isFound =
        shortage.During([&] { return utils.GetSpecialFolderPath(eSpecialFolder_PERSONAL, path); });
    EXPECT_EQ(path, isFound ? kFolder : path.empty() ? u"" : u"Folder Not Valid on this OS");
  });
  ForEachShortage([&](MemoryShortage& shortage) {
    Text path = u"what the caller had there before";
    EXPECT_FALSE(shortage.During([&] { return utils.GetSpecialFolderPath(-1, path); }));
    EXPECT_TRUE(path.empty() || path == u"Folder Not Valid on this OS");
    EXPECT_EQ(path.empty(), shortage.Hit());
  });
}

TEST(CFileMemoryErrorTest, WhatRaisesErrorsRaisesErrorSevenDuringAShortage) {
  ForEachShortage([](MemoryShortage& shortage) {
    const Setting setting;
    const std::int32_t number =
        shortage.RaisedDuring([&] { setting.file.DirMakeNested(u"X:\\a folder whose name needs memory"); });
    EXPECT_TRUE(number == kPathNotFound || (shortage.Hit() && number == kOutOfMemory)) << number;
  });
  ForEachShortage([](MemoryShortage& shortage) {
    const Setting setting;
    const std::int32_t number =
        shortage.RaisedDuring([&] { setting.file.EnsureExtension(kBackslashes, u"txt"); });
    EXPECT_EQ(number, shortage.Hit() ? kOutOfMemory : 0);
  });
  ForEachShortage([](MemoryShortage& shortage) {
    const Setting setting;
    const std::int32_t number = shortage.RaisedDuring([&] { setting.file.EnsureExtension(u"", u"txt"); });
    EXPECT_EQ(number, shortage.Hit() ? kOutOfMemory : kSubscriptOutOfRange);
  });
}

}  // namespace
}  // namespace vorquill21
