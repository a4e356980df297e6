#include <gtest/gtest.h>

#include "tests/log/log_fixture.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/self_test.hpp"

namespace vorquill21 {
namespace {

VORQUILL21_OPEN_SELF_TEST(CLog);

using test::FaultPlan;
using test::ForEachFault;

constexpr TextView kTestLog = u"/library/self test/test log.txt";

FailedTests SelfTestOn(Platform& platform) {
  return SelfTest(CLog(platform));
}

TEST(LogSelfTest, MakesItsFolderAndDeletesItsFile) {
  test::FakePlatform fake;
  EXPECT_EQ(SelfTestOn(fake.platform), FailedTests());
  EXPECT_TRUE(fake.files.FolderExists(u"/library/self test"));
  EXPECT_FALSE(fake.files.FileIsThere(kTestLog));
}

/// Keeps what is deleted.
class KeepingFiles : public test::MemoryFiles {
 public:
  void Delete(TextView pattern) override {
    deleted = Content(pattern);
    MemoryFiles::Delete(pattern);
  }

  std::string deleted;
};

TEST(LogSelfTest, AddsEntriesOfEveryKindBetweenBanners) {
  KeepingFiles files;
  files.MakeFolder(u"/library");
  test::FakePlatform fake;
  Platform platform = fake.With(files);
  SelfTestOn(platform);
  const std::string rule = test::kRule + "\r\n";
  EXPECT_EQ(files.deleted,
            rule + "TEST LOG\r\nLog started at 09:05 21/11/2026\r\n" + rule +
                "test entry\r\n* Warning: test entry\r\n* Warning: test entry Error: 0 \r\ntest entry\r\n"
                " \r\nLog stopped. Time from log start = 0.0 secs\r\n \r\n");
}

TEST(LogSelfTest, DeliberateComparesNothing) {
  test::FakePlatform fake;
  fake.process.libraryFolder = u"/nowhere";
  EXPECT_EQ(SelfTestOn(fake.platform), FailedTests());
}

TEST(LogSelfTest, FailsByTheErrorOfDeletingItsFileAlone) {
  int errors = 0;
  ForEachFault(kPermissionDenied, [&](FaultPlan& plan) {
    test::FakePlatform base;
    test::FaultyPlatform faulty(base.platform, plan);
    try {
      EXPECT_EQ(SelfTestOn(faulty.platform), FailedTests());
    } catch (const LibraryError& error) {
      EXPECT_EQ(error.Number(), kPermissionDenied);
      EXPECT_TRUE(base.files.FileIsThere(kTestLog));
      ++errors;
    }
  });
  EXPECT_EQ(errors, 1);
}

}  // namespace
}  // namespace vorquill21
