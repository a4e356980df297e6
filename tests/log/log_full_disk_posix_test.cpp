#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/small_disk_posix.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kRoom = 256 * 1024;

std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(LogFullDiskTest, LoggingGoesOnWhenAFullDiskHasRoomAgainOnTheRealSystem) {
  const test::TemporaryFolder folder;
  const test::SmallDisk disk(folder.Path().string(), kRoom);
  if (!disk.IsMounted()) GTEST_SKIP() << "no disk could be mounted: " << disk.Reason();
  const std::filesystem::path path = folder.Path() / "host.log";
  {
    std::ofstream filler(folder.Path() / "filler", std::ios::binary);
    filler << std::string(kRoom / 2, 'f');
  }
  CLog log;
  log.Initialise(folder.Below(u"host.log"), 1'000'000, false, true, u"");
  const Text entry(998, u'e');
  constexpr std::size_t kEntries = 200;
  for (std::size_t i = 0; i < kEntries; ++i) EXPECT_NO_THROW(log.AddEntry(entry, logNormal));
  const std::size_t full = std::filesystem::file_size(path);
  EXPECT_LT(full, kEntries * 1000);
  EXPECT_EQ(full % 1000, 0u) << "no entry is written in part";

  std::filesystem::remove(folder.Path() / "filler");
  log.AddEntry(u"again", logNormal);
  const std::string content = ContentOf(path);
  EXPECT_EQ(content.size(), full + 7);
  EXPECT_TRUE(content.ends_with("again\r\n"));
}

}  // namespace
}  // namespace vorquill21
