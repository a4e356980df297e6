#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/support/small_disk_posix.hpp"
#include "tests/support/temporary_folder.hpp"

namespace vorquill21 {
namespace {

using test::ErrorOf;
using test::RaisedError;

constexpr std::size_t kRoom = 256 * 1024;

std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// CFileStream on the system's own files; message boxes are recorded.
class FileStreamFullDiskTest : public ::testing::Test {
 protected:
  void ExpectRefusal(const Text& path) {
    for (const bool isAppending : {false, true}) {
      EXPECT_EQ(
          ErrorOf([&] { stream_.FileWrite(path, isAppending); }),
          (RaisedError{kDiskFull, u"CFileStream.FileWrite",
                       u"An error occurred while writing file: " + path + u"\r\nError was: Disk full"}));
    }
    EXPECT_TRUE(desktop_.messages.empty());
  }

  test::TemporaryFolder folder_;
  test::RecordingDesktop desktop_;
  Platform& native_ = Platform::Native();
  Platform platform_{native_.GetFiles(), desktop_, native_.GetLocale(), native_.GetProcess(),
                     native_.GetSettings()};
  CFileStream stream_{platform_};
};

TEST_F(FileStreamFullDiskTest, ADeviceThatIsFullRaisesOnTheRealSystem) {
  ExpectRefusal(u"/dev/full");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(FileStreamFullDiskTest, AFullDiskKeepsTheOldDocumentOnTheRealSystem) {
  const test::SmallDisk disk(folder_.Path().string(), kRoom);
  if (!disk.IsMounted()) GTEST_SKIP() << "no disk could be mounted: " << disk.Reason();
  const Text path = folder_.Below(u"data.txt");
  const std::filesystem::path file = folder_.Path() / "data.txt";
  stream_.Initialise(u"V 1", test::NoVersions());
  stream_.AddField(u"A", 1);
  ASSERT_TRUE(stream_.FileWrite(path));
  const std::string old = ContentOf(file);

  stream_.AddField(u"LONG", Text(2 * kRoom, u'x'));
  ExpectRefusal(path);
  EXPECT_EQ(ContentOf(file), old);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 1);
  EXPECT_EQ(stream_.GetFieldNumber(u"A"), Variant(1.0)) << "the document in memory is still whole";

  stream_.RemoveField(u"LONG");
  EXPECT_TRUE(stream_.FileWrite(path));
  EXPECT_EQ(ContentOf(file), old);
}

}  // namespace
}  // namespace vorquill21
