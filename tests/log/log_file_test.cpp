// What a start makes of the file: cleared, kept, or cut.

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <span>
#include <utility>

#include "tests/log/log_fixture.hpp"
#include "tests/support/locales.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21 {
namespace {

using namespace std::string_literals;
using test::kBanner;
using test::kLogPath;
using test::kNoBound;
using test::LogTest;

/// `count` bytes that differ from their neighbours, with line ends among them.
std::string Sample(std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; bytes.size() < count; ++i) bytes += "entry " + std::to_string(i) + "\r\n";
  bytes.resize(count);
  return bytes;
}

TEST_F(LogTest, StartingClearsTheFileUnlessEntriesAreAppended) {
  fake.files.Replace(kLogPath, "old\r\n");
  Initialise(kNoBound, false, true);
  log.StartLogging();
  EXPECT_EQ(Bytes(), "old\r\n" + kBanner);
  Initialise(kNoBound, false, false);
  log.StartLogging();
  EXPECT_EQ(Bytes(), kBanner);
}

TEST_F(LogTest, DeliberateEveryCutLeavesALineOfOneNul) {
  Initialise(100);
  const std::string old = Sample(250);
  fake.files.Replace(kLogPath, old);
  log.StartLogging();
  EXPECT_EQ(Bytes(), old.substr(151) + '\0' + "\r\n" + kBanner);

  const std::string afterFirst = Bytes();
  log.StartLogging();
  EXPECT_EQ(Bytes(), afterFirst.substr(afterFirst.size() - 99) + '\0' + "\r\n" + kBanner);
}

TEST_F(LogTest, AFileIsCutWhenItAndANulAreLongerThanTheBound) {
  struct Row {
    std::size_t length;
    std::int32_t bound;
    bool isCut;
  };
  const Row rows[] = {
      {98, 100, false}, {99, 100, false}, {100, 100, true},
      {101, 100, true}, {0, 1, false},    {1, 1, true},
      {1, 2, false},    {2, 2, true},     {5000, std::numeric_limits<std::int32_t>::max(), false},
  };
  for (const Row& row : rows) {
    Initialise(row.bound);
    const std::string old = Sample(row.length);
    fake.files.Replace(kLogPath, old);
    log.StartLogging();
    const std::string kept =
        old.substr(old.size() - std::min(old.size(), static_cast<std::size_t>(row.bound) - 1));
    EXPECT_EQ(Bytes(), (row.isCut ? kept + '\0' + "\r\n" : old) + kBanner) << row.length << ' ' << row.bound;
  }
}

TEST_F(LogTest, ABoundOfZeroKeepsALineEndAlone) {
  Initialise(0);
  for (const std::size_t length : {0u, 1u, 250u}) {
    fake.files.Replace(kLogPath, Sample(length));
    log.StartLogging();
    EXPECT_EQ(Bytes(), "\r\n" + kBanner);
  }
}

TEST_F(LogTest, ANegativeBoundCutsNothing) {
  for (const std::int32_t bound : {-1, std::numeric_limits<std::int32_t>::min()}) {
    Initialise(bound);
    fake.files.Replace(kLogPath, Sample(250));
    log.StartLogging();
    EXPECT_EQ(Bytes(), Sample(250) + kBanner);
  }
}

TEST_F(LogTest, BytesOfEveryKindSurviveACut) {
  std::string old;
  for (int i = 0; i < 1024; ++i) old += static_cast<char>(i % 256);
  Initialise(1000);
  fake.files.Replace(kLogPath, old);
  log.StartLogging();
  EXPECT_EQ(Bytes(), old.substr(old.size() - 999) + '\0' + "\r\n" + kBanner);
}

TEST_F(LogTest, OnlyAStartCutsTheFile) {
  Initialise(10);
  for (int i = 0; i < 100; ++i) log.AddEntry(u"entry", logNormal);
  EXPECT_EQ(Bytes().size(), 700u);
  log.StopLogging();
  EXPECT_GT(Bytes().size(), 700u);
}

/// Another process appends to a file between the look at its length and its reading.
class GrowingFiles : public test::MemoryFiles {
 public:
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override {
    const auto before = MemoryFiles::OpenForReading(path);
    const std::uint64_t length = before->Length();
    Append(path, "of another\r\n");
    return std::make_unique<Reader>(MemoryFiles::OpenForReading(path), length);
  }

 private:
  class Reader : public ByteReader {
   public:
    Reader(std::unique_ptr<ByteReader> base, std::uint64_t length)
        : base_(std::move(base)), length_(length) {}
    std::uint64_t Length() const override { return length_; }
    std::size_t Read(std::span<char> buffer) override { return base_->Read(buffer); }

   private:
    std::unique_ptr<ByteReader> base_;
    std::uint64_t length_;
  };
};

TEST(LogOfManyTest, AFileThatGrowsWhileItIsCutIsCutToItsNewEnd) {
  test::FakePlatform fake;
  GrowingFiles files;
  files.MakeFolder(u"/library");
  files.Replace(kLogPath, Sample(250));
  Platform platform = fake.With(files);
  CLog log(platform);
  log.Initialise(kLogPath, 100, false, true, u"TITLE");
  log.StartLogging();
  const std::string grown = Sample(250) + "of another\r\n";
  EXPECT_EQ(files.Content(kLogPath), grown.substr(grown.size() - 99) + '\0' + "\r\n" + kBanner);
}

TEST_F(LogTest, AClearedFileIsNotCut) {
  Initialise(10, false, false);
  fake.files.Replace(kLogPath, Sample(250));
  log.StartLogging();
  EXPECT_EQ(Bytes(), kBanner);
}

TEST(LogOfAnotherCodePageTest, CharactersAreCountedNotBytes) {
  test::FakePlatform fake;
  test::PairLocale pairs;
  Platform platform = fake.With(pairs);
  struct Row {
    std::string old;
    std::int32_t bound;
    std::string kept;
  };
  const Row rows[] = {
      {"a\0b\0c\0d\0"s, 5, "a\0b\0c\0d\0"s},       // four characters and the NUL are not too long
      {"a\0b\0c\0d\0"s, 4, "b\0c\0d\0\0\0\r\n"s},  // the NUL is a character of two bytes here
      {"a\0b\0c\0d\0"s, 1, "\0\0\r\n"s},
      {"a\0b\0c\0d\0"s, 0, "\r\n"s},
  };
  for (const Row& row : rows) {
    fake.files.Replace(kLogPath, row.old);
    CLog log(platform);
    log.Initialise(kLogPath, row.bound, false, true, u"");
    log.StartLogging();
    EXPECT_TRUE(fake.files.Content(kLogPath).starts_with(row.kept + "-\0-\0"s)) << row.bound;
  }
}

TEST_F(LogTest, DeliberateAHiddenFileIsNeitherClearedNorCut) {
  log.Initialise(u"/library/.host.log", 10, false, false, u"TITLE");
  fake.files.Replace(u"/library/.host.log", Sample(250));
  log.StartLogging();
  EXPECT_EQ(fake.files.Content(u"/library/.host.log"), Sample(250) + kBanner);
}

TEST_F(LogTest, ANameWithWildcardsClearsNoOtherFiles) {
  fake.files.Replace(u"/library/a.log", "kept");
  log.Initialise(u"/library/*.log", 1, false, false, u"");
  log.StartLogging();
  EXPECT_EQ(fake.files.Content(u"/library/a.log"), "kept");
}

TEST_F(LogTest, AStartOnAFolderOrInAMissingFolderIsQuiet) {
  fake.files.MakeFolder(u"/library/folder");
  test::EntryRecorder recorder(log);
  for (const TextView path : {u"/library/folder", u"/nowhere/host.log", u"", u"Z:\\host.log"}) {
    recorder.entries.clear();
    log.Initialise(path, 10, false, false, u"TITLE");
    log.StartLogging();
    log.StopLogging();
    EXPECT_EQ(recorder.entries.size(), 7u) << ToUtf8(path);
    EXPECT_EQ(log.Text(), u"");
  }
  EXPECT_TRUE(fake.desktop.messages.empty());
}

TEST_F(LogTest, AnErrorOfTheClockOrTheLocaleEndsAStartQuietly) {
  struct FailingLocale : test::ChosenLocale {
    Text ShortDate() const override { throw LibraryError(kDeviceInputOutput); }
  };
  struct FailingProcess : test::FixedProcess {
    double SecondsSinceMidnight() const override { throw LibraryError(kDeviceInputOutput); }
  };
  FailingLocale locale;
  FailingProcess process;
  Platform withoutDate(fake.files, fake.desktop, locale, fake.process, fake.settings);
  Platform withoutClock(fake.files, fake.desktop, fake.locale, process, fake.settings);
  for (Platform* platform : {&withoutDate, &withoutClock}) {
    CLog failing(*platform);
    failing.Initialise(kLogPath, kNoBound, false, true, u"");
    failing.AddEntry(u"x", logException);
    EXPECT_NO_THROW(failing.StartLogging());
    EXPECT_FALSE(failing.LogContainsExceptions());
  }
}

}  // namespace
}  // namespace vorquill21
