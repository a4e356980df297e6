#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <filesystem>
#include <string>

#include "tests/platform/system_posix.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/small_disk_posix.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/platform/files_posix.hpp"

namespace vorquill21 {
namespace {

using test::ContentOf;
using test::NamesIn;
using test::RaisedNumber;
using test::WriteContent;
using Names = std::vector<std::string>;

constexpr std::size_t kRoom = 256 * 1024;

/// No file of this process grows beyond kRoom.
class LimitedFileSize {
 public:
  LimitedFileSize() {
    ::getrlimit(RLIMIT_FSIZE, &oldLimit_);
    rlimit limit = oldLimit_;
    limit.rlim_cur = kRoom;
    ::setrlimit(RLIMIT_FSIZE, &limit);
    oldHandler_ = ::signal(SIGXFSZ, SIG_IGN);
  }
  LimitedFileSize(const LimitedFileSize&) = delete;
  LimitedFileSize& operator=(const LimitedFileSize&) = delete;
  ~LimitedFileSize() {
    ::setrlimit(RLIMIT_FSIZE, &oldLimit_);
    ::signal(SIGXFSZ, oldHandler_);
  }

 private:
  rlimit oldLimit_{};
  void (*oldHandler_)(int) = nullptr;
};

class FullDiskTest : public ::testing::Test {
 protected:
  std::string Folder() const { return folder_.Path().string(); }
  std::string At(const std::string& name) const { return Folder() + '/' + name; }
  Text Below(const std::string& name) const { return FromUtf8(At(name)); }

  /// What holds wherever `kTooMuch` does not fit.
  void CheckThatNothingIsLost() {
    const std::size_t descriptors = test::OpenDescriptors();
    EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("new"), kTooMuch); }), 61);
    EXPECT_EQ(RaisedNumber([&] { files_.Append(Below("new"), kTooMuch); }), 61);
    EXPECT_TRUE(NamesIn(Folder()).empty());

    WriteContent(At("a"), "old");
    EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("a"), kTooMuch); }), 61);
    EXPECT_TRUE(ContentOf(At("a")) == "old");
    EXPECT_EQ(RaisedNumber([&] { files_.Append(Below("a"), kTooMuch); }), 61);
    EXPECT_TRUE(ContentOf(At("a")) == "old");

    std::filesystem::create_hard_link(At("a"), At("b"));
    EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("a"), kTooMuch); }), 61);
    EXPECT_TRUE(ContentOf(At("b")) == "old");

    files_.Append(Below("a"), " and more");
    EXPECT_EQ(ContentOf(At("b")), "old and more");
    EXPECT_EQ(NamesIn(Folder()), (Names{"a", "b"}));
    EXPECT_EQ(test::OpenDescriptors(), descriptors);
  }

  const std::string kTooMuch = std::string(2 * kRoom, 'x');
  test::TemporaryFolder folder_;
  FileCalls calls_;
  PosixFiles files_{calls_};
};

TEST_F(FullDiskTest, AFileThatMayNotGrowKeepsItsContentOnTheRealSystem) {
  const LimitedFileSize limit;
  CheckThatNothingIsLost();
}

TEST_F(FullDiskTest, AFullDiskKeepsWhatItHoldsOnTheRealSystem) {
  const test::SmallDisk disk(Folder(), kRoom);
  if (!disk.IsMounted()) GTEST_SKIP() << "no disk could be mounted: " << disk.Reason();
  CheckThatNothingIsLost();
}

TEST_F(FullDiskTest, ADiskThatIsFullToTheLastByteKeepsWhatItHoldsOnTheRealSystem) {
  const test::SmallDisk disk(Folder(), kRoom);
  if (!disk.IsMounted()) GTEST_SKIP() << "no disk could be mounted: " << disk.Reason();
  WriteContent(At("a"), "old");
  EXPECT_EQ(RaisedNumber([&] {
              for (;;) files_.Append(Below("filler"), std::string(10'000, 'f'));
            }),
            61);
  EXPECT_EQ(ContentOf(At("filler")).size() % 10'000, 0u);
  EXPECT_EQ(RaisedNumber([&] { files_.Replace(Below("a"), std::string(10'000, 'n')); }), 61);
  EXPECT_EQ(ContentOf(At("a")), "old");
  EXPECT_EQ(NamesIn(Folder()), (Names{"a", "filler"}));
  files_.Delete(Below("filler"));
  files_.Replace(Below("a"), std::string(10'000, 'n'));
  EXPECT_EQ(ContentOf(At("a")), std::string(10'000, 'n'));
}

}  // namespace
}  // namespace vorquill21
