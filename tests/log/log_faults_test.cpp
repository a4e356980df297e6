#include <gtest/gtest.h>

#include <array>

#include "tests/log/log_fixture.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/locales.hpp"

namespace vorquill21 {
namespace {

using test::EntryRecorder;
using test::FaultPlan;
using test::ForEachFault;
using test::kBanner;
using test::kLogPath;
using test::kNoBound;

constexpr std::array kNumbers{kDeviceInputOutput, kDiskFull,     kPermissionDenied,
                              kPathNotFound,      kTooManyFiles, kOutOfMemory};

/// A log on files whose calls may fail; its own file holds "old", CR, LF.
struct FaultyLog {
  explicit FaultyLog(FaultPlan& plan, std::int32_t bound = kNoBound, bool appends = true)
      : faulty(base.platform, plan) {
    base.files.Replace(kLogPath, "old\r\n");
    log.Initialise(kLogPath, bound, false, appends, u"TITLE");
  }

  const std::string& Bytes() { return base.files.Content(kLogPath); }

  test::FakePlatform base;
  test::FaultyPlatform faulty;
  CLog log{faulty.platform};
  EntryRecorder recorder{log};
};

TEST(LogFaultsTest, MakingInitialisingAndDestroyingALogCallsNothing) {
  const int faults = ForEachFault(kDeviceInputOutput, [](FaultPlan& plan) {
    test::FakePlatform base;
    test::FaultyPlatform faulty(base.platform, plan);
    CLog log(faulty.platform);
    log.Initialise(kLogPath, 10, true, false, u"TITLE");
    log.Initialise(u"/library/other.log", 10, true, false, u"TITLE");
  });
  EXPECT_EQ(faults, 0);
}

TEST(LogFaultsTest, AnEntryIsLostOrWritten) {
  for (const RuntimeErrorNumber number : kNumbers) {
    const int faults = ForEachFault(number, [](FaultPlan& plan) {
      FaultyLog faulty(plan);
      faulty.log.AddEntry(u"entry", logException);
      EXPECT_EQ(faulty.Bytes(), plan.Hit() ? "old\r\n" : "old\r\n* Warning: entry\r\n");
      EXPECT_EQ(faulty.recorder.entries.size(), 1u);
      EXPECT_EQ(faulty.recorder.entries.front().message, u"* Warning: entry");
      EXPECT_TRUE(faulty.log.LogContainsExceptions());
      EXPECT_TRUE(faulty.base.desktop.messages.empty());
    });
    EXPECT_EQ(faults, 1) << "one call of the platform adds an entry";
  }
}

TEST(LogFaultsTest, AStartIsQuietAndRaisesItsEventsWhateverFails) {
  for (const RuntimeErrorNumber number : kNumbers) {
    for (const bool appends : {true, false}) {
      const int faults = ForEachFault(number, [&](FaultPlan& plan) {
        FaultyLog faulty(plan, 3, appends);
        EXPECT_NO_THROW(faulty.log.StartLogging());
        EXPECT_EQ(faulty.recorder.entries.size(), 4u);
        EXPECT_EQ(faulty.base.files.OpenReaders(), 0);
        EXPECT_TRUE(faulty.base.desktop.messages.empty());
        const std::string cut = std::string("\r\n") + '\0' + "\r\n";
        const std::string old = appends ? cut : "";
        EXPECT_TRUE(plan.Hit() || faulty.Bytes() == old + kBanner) << faulty.Bytes();
      });
      // Look for it, open, pass over its beginning, read twice, replace, four entries; or delete it first.
      EXPECT_EQ(faults, appends ? 10 : 7);
    }
  }
}

TEST(LogFaultsTest, AFileThatCannotBeCutIsLeftAsItIs) {
  ForEachFault(kDeviceInputOutput, [](FaultPlan& plan) {
    FaultyLog faulty(plan, 3);
    faulty.log.StartLogging();
    const bool isCut = faulty.Bytes().starts_with(std::string("\r\n") + '\0' + "\r\n");
    EXPECT_TRUE(isCut || faulty.Bytes().starts_with("old\r\n"));
    EXPECT_TRUE(isCut || faulty.Bytes() == "old\r\n" + kBanner) << faulty.Bytes();
  });
}

TEST(LogFaultsTest, AStopIsQuietAndRaisesItsEventsWhateverFails) {
  const int faults = ForEachFault(kDiskFull, [](FaultPlan& plan) {
    FaultyLog faulty(plan);
    EXPECT_NO_THROW(faulty.log.StopLogging());
    EXPECT_EQ(faulty.recorder.entries.size(), 3u);
  });
  EXPECT_EQ(faults, 3);
}

TEST(LogFaultsTest, TextOfAFileThatCannotBeReadIsEmpty) {
  ForEachFault(kDeviceInputOutput, [](FaultPlan& plan) {
    FaultyLog faulty(plan);
    const Text text = faulty.log.Text();
    EXPECT_EQ(text, plan.Hit() ? u"" : u"old");
    EXPECT_EQ(faulty.base.files.OpenReaders(), 0);
    EXPECT_TRUE(faulty.base.desktop.messages.empty());
  });
}

/// Takes no more than a certain number of bytes.
class SmallFiles : public test::MemoryFiles {
 public:
  void Append(TextView path, std::string_view bytes) override {
    if (bytes.size() > room) throw LibraryError(kDiskFull);
    room -= bytes.size();
    MemoryFiles::Append(path, bytes);
  }

  std::size_t room = 0;
};

TEST(LogFaultsTest, LoggingGoesOnWhenAFullDiskHasRoomAgain) {
  SmallFiles files;
  files.MakeFolder(u"/library");
  test::FakePlatform fake;
  Platform platform = fake.With(files);
  CLog log(platform);
  log.Initialise(kLogPath, kNoBound, false, true, u"");
  EntryRecorder recorder(log);
  files.room = 20;
  for (int i = 0; i < 10; ++i) log.AddEntry(u"entry", logNormal);
  EXPECT_EQ(files.Content(kLogPath), "entry\r\nentry\r\n");
  files.room = 100;
  log.AddEntry(u"again", logNormal);
  EXPECT_EQ(files.Content(kLogPath), "entry\r\nentry\r\nagain\r\n");
  EXPECT_EQ(recorder.entries.size(), 11u);
}

/// Counts what reaches the file.
class CountingFiles : public test::MemoryFiles {
 public:
  void Append(TextView path, std::string_view bytes) override {
    appended.emplace_back(bytes);
    MemoryFiles::Append(path, bytes);
  }

  std::vector<std::string> appended;
};

TEST(LogFaultsTest, LineAndLineEndAreWrittenTogether) {
  CountingFiles files;
  test::FakePlatform fake;
  Platform platform = fake.With(files);
  CLog log(platform);
  log.Initialise(u"/host.log", kNoBound, false, true, u"");
  log.AddEntry(u"a\r\nb", logExact);
  log.AddEntry(u"c", logNormal);
  EXPECT_EQ(files.appended, (std::vector<std::string>{"a\r\nb\r\n", "c\r\n"}));
}

TEST(LogFaultsTest, MemoryThatRunsOutWhileWritingLosesTheEntry) {
  test::FakePlatform fake;
  test::ExhaustedLocale locale;
  Platform platform = fake.With(locale);
  CLog log(platform);
  log.Initialise(kLogPath, kNoBound, false, true, u"");
  EntryRecorder recorder(log);
  EXPECT_NO_THROW(log.AddEntry(u"entry", logNormal));
  EXPECT_EQ(recorder.entries.size(), 1u);
  EXPECT_FALSE(fake.files.FileIsThere(kLogPath));
}

}  // namespace
}  // namespace vorquill21
