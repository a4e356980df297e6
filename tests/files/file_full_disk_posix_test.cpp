#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/small_disk_posix.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/files/file.hpp"

namespace vorquill21 {
namespace {

using test::ErrorMessage;

constexpr std::size_t kRoom = 256 * 1024;

/// CFile on the system's own files; message boxes are recorded.
class FileFullDiskTest : public ::testing::Test {
 protected:
  std::string ContentOf(const std::string& name) const {
    std::ifstream file(folder_.Path() / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  /// Fails to write `text` without and with a message.
  void ExpectRefusal(const Text& path, TextView text) {
    desktop_.messages.clear();
    EXPECT_FALSE(file_.FileWriteAsString(path, text));
    EXPECT_TRUE(desktop_.messages.empty());
    EXPECT_FALSE(file_.FileWriteAsString(path, text, false));
    EXPECT_EQ(desktop_.messages, std::vector{ErrorMessage(u"An error occurred while writing file: " + path)});
  }

  test::TemporaryFolder folder_;
  test::RecordingDesktop desktop_;
  Platform& native_ = Platform::Native();
  Platform platform_{native_.GetFiles(), desktop_, native_.GetLocale(), native_.GetProcess(),
                     native_.GetSettings()};
  CFile file_{platform_};
};

TEST_F(FileFullDiskTest, ADeviceThatIsFullRefusesTheTextOnTheRealSystem) {
  ExpectRefusal(u"/dev/full", u"text");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(FileFullDiskTest, AFullDiskKeepsTheOldTextOnTheRealSystem) {
  const test::SmallDisk disk(folder_.Path().string(), kRoom);
  if (!disk.IsMounted()) GTEST_SKIP() << "no disk could be mounted: " << disk.Reason();
  const Text path = folder_.Below(u"a.txt");
  const Text tooMuch(2 * kRoom, u'x');
  ExpectRefusal(path, tooMuch);
  EXPECT_EQ(Names(), std::vector<std::string>());

  ASSERT_TRUE(file_.FileWriteAsString(path, u"old", false));
  ExpectRefusal(path, tooMuch);
  EXPECT_EQ(ContentOf("a.txt"), "old\r\n");
  EXPECT_EQ(Names(), std::vector<std::string>{"a.txt"});
  Text text = u"before";
  EXPECT_TRUE(file_.FileReadAsString(path, text, false));
  EXPECT_EQ(text, u"old");
}

}  // namespace
}  // namespace vorquill21
