#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/temporary_folder.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21 {
namespace {

std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(NativeLogTest, APeriodIsWrittenAndCutOnTheRealSystem) {
  const test::TemporaryFolder folder;
  const std::filesystem::path path = folder.Path() / "host.log";
  CLog log;
  log.Initialise(folder.Below(u"host.log"), 50, false, true, u"TITLE");
  log.StartLogging();
  log.AddEntry(u"entry", logException);
  log.StopLogging();
  const std::string first = ContentOf(path);
  const std::string rule(59, '-');
  EXPECT_TRUE(first.starts_with(rule + "\r\nTITLE\r\nLog started at ")) << first;
  EXPECT_NE(first.find(rule + "\r\n* Warning: entry\r\n \r\nLog stopped. Time from log start = 0."),
            std::string::npos);
  EXPECT_TRUE(first.ends_with(" secs\r\n \r\n"));
  EXPECT_EQ(FromUtf8(first), log.Text() + u"\r\n");

  log.StartLogging();
  EXPECT_TRUE(ContentOf(path).starts_with(first.substr(first.size() - 49) + '\0' + "\r\n" + rule));
}

TEST(NativeLogTest, ALogThatSomebodyElseAppendsToKeepsEveryLineOnTheRealSystem) {
  const test::TemporaryFolder folder;
  CLog first;
  CLog second;
  for (CLog* log : {&first, &second}) {
    log->Initialise(folder.Below(u"host.log"), 1000, false, true, u"");
  }
  for (int i = 0; i < 100; ++i) {
    first.AddEntry(u"first", logNormal);
    second.AddEntry(u"second", logNormal);
  }
  EXPECT_EQ(ContentOf(folder.Path() / "host.log").size(), 100 * (7 + 8u));
}

}  // namespace
}  // namespace vorquill21
