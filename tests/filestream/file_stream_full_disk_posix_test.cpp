#include <filesystem>
#include <fstream>
#include <string>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/small_disk_posix.hpp"
#include "tests/support/temporary_folder.hpp"

namespace vorquill21 {
namespace {

using test::ErrorOf;
using test::NoVersions;
using test::RaisedError;

RaisedError DiskFullAt(const Text& path) {
  return {kDiskFull, u"CFileStream.FileWrite",
          u"An error occurred while writing file: " + path + u"\r\nError was: Disk full"};
}

TEST(CFileStreamFullDiskTest, ADeviceThatTakesNothingIsRaisedOnTheRealSystem) {
  CFileStream stream;
  for (const bool isAppending : {false, true}) {
    EXPECT_EQ(ErrorOf([&] { stream.FileWrite(u"/dev/full", isAppending); }), DiskFullAt(u"/dev/full"));
  }
}

TEST(CFileStreamFullDiskTest, AFullDiskKeepsTheFileThatItHoldsOnTheRealSystem) {
  constexpr std::size_t kRoom = 256 * 1024;
  const test::TemporaryFolder folder;
  const test::SmallDisk disk(folder.Path().string(), kRoom);
  if (!disk.IsMounted()) GTEST_SKIP() << "no disk could be mounted: " << disk.Reason();
  const Text path = folder.Below(u"data.txt");
  CFileStream stream;
  stream.Initialise(u"V 1", NoVersions());
  EXPECT_TRUE(stream.FileWrite(path));
  const Text before = stream.GetContents();

  stream.AddField(u"MUCH", Text(2 * kRoom, u'x'));
  for (const bool isAppending : {false, true}) {
    EXPECT_EQ(ErrorOf([&] { stream.FileWrite(path, isAppending); }), DiskFullAt(path));
    CFileStream other;
    Text text;
    EXPECT_TRUE(other.FileRead(path, &text));
    EXPECT_EQ(text, before + u'\r');
  }
  EXPECT_TRUE(stream.FieldExists(u"MUCH"));

  stream.RemoveField(u"MUCH");
  EXPECT_TRUE(stream.FileWrite(path)) << "there is room for this one";
}

}  // namespace
}  // namespace vorquill21
