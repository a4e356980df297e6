#include "vorquill21/log/log.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <stdexcept>

#include "tests/log/log_fixture.hpp"
#include "tests/support/raised_error.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/string_reference.hpp"

namespace vorquill21 {
namespace {

using test::EntryRecorder;
using test::ErrorRaisedBy;
using test::kLogPath;
using test::kNoBound;
using test::LoggedEntry;
using test::LogTest;
using test::RaisedError;
using test::RaisedNumber;

// --- Before Initialise -----------------------------------------------------------------------------------

RaisedError NotInitialised(TextView source) {
  return {1000, Text(source), u"Log not initialised"};
}

TEST(UninitialisedLogTest, OperationsRaiseAnErrorThatNamesThem) {
  test::FakePlatform fake;
  CLog log(fake.platform);
  const EntryRecorder recorder(log);
  EXPECT_EQ(ErrorRaisedBy([&] { log.AddEntry(u"entry", logNormal); }), NotInitialised(u"CLog.AddEntry"));
  EXPECT_EQ(ErrorRaisedBy([&] { log.AddEntry(u"", logException); }), NotInitialised(u"CLog.AddEntry"));
  EXPECT_EQ(ErrorRaisedBy([&] { log.StartLogging(); }), NotInitialised(u"CLog.StartLogging"));
  EXPECT_EQ(ErrorRaisedBy([&] { log.StopLogging(); }), NotInitialised(u"CLog.StopLogging"));
  EXPECT_EQ(ErrorRaisedBy([&] { log.View(); }), NotInitialised(u"CLog.View"));
  EXPECT_FALSE(log.LogContainsExceptions());
  EXPECT_TRUE(recorder.entries.empty());
  EXPECT_TRUE(fake.desktop.openedDocuments.empty());
}

TEST(UninitialisedLogTest, PropertiesAndTextRaiseNothing) {
  test::FakePlatform fake;
  const CLog log(fake.platform);
  EXPECT_EQ(log.Filepath(), u"");
  EXPECT_FALSE(log.LogContainsExceptions());
  EXPECT_FALSE(log.LogDiagnostics());
  EXPECT_EQ(log.Text(), u"");
}

TEST(UninitialisedLogTest, AnInitialiseThatFailedInitialisesNothing) {
  test::FakePlatform fake;
  CLog log(fake.platform);
  EXPECT_EQ(RaisedNumber([&] { log.Initialise(kLogPath, kNoBound, true, true, Missing{}); }), 13);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ErrorRaisedBy([&] { log.AddEntry(u"entry", logNormal); }), NotInitialised(u"CLog.AddEntry"));
    EXPECT_EQ(ErrorRaisedBy([&] { log.StartLogging(); }), NotInitialised(u"CLog.StartLogging"));
  }
  EXPECT_EQ(log.Filepath(), u"");
  log.Initialise(kLogPath, kNoBound, true, true, u"");
  log.AddEntry(u"entry", logNormal);
  EXPECT_EQ(fake.files.Content(kLogPath), "entry\r\n");
}

// --- Initialise ------------------------------------------------------------------------------------------

TEST_F(LogTest, InitialiseStoresAndWritesNothing) {
  EXPECT_EQ(log.Filepath(), kLogPath);
  EXPECT_FALSE(log.LogDiagnostics());
  Initialise(100, true);
  EXPECT_TRUE(log.LogDiagnostics());
  EXPECT_EQ(Bytes(), "(missing)");
}

TEST_F(LogTest, InitialiseAgainRedirectsTheLog) {
  log.AddEntry(u"first", logException);
  log.Initialise(u"/library/other.log", kNoBound, false, true, u"");
  EXPECT_TRUE(log.LogContainsExceptions()) << "only a start forgets warnings";
  log.AddEntry(u"second", logNormal);
  EXPECT_EQ(Bytes(), "* Warning: first\r\n");
  EXPECT_EQ(fake.files.Content(u"/library/other.log"), "second\r\n");
}

TEST_F(LogTest, TheTitleIsConvertedToText) {
  struct Row {
    Variant title;
    std::string line;
  };
  const Row rows[] = {{u"Rig 4", "Rig 4\r\n"}, {2.5, "2,5\r\n"}, {true, "True\r\n"},     {7, "7\r\n"},
                      {Variant(), ""},         {u"", ""},        {u"a\r\nb", "a: b\r\n"}};
  fake.locale.decimalSeparator = u',';
  for (const Row& row : rows) {
    log.Initialise(kLogPath, kNoBound, false, false, row.title);
    log.StartLogging();
    EXPECT_EQ(Bytes(),
              test::kRule + "\r\n" + row.line + "Log started at 09:05 21/11/2026\r\n" + test::kRule + "\r\n");
  }
}

TEST_F(LogTest, ATitleThatIsNoTextLeavesTheLogAsItWas) {
  const Variant titles[] = {Missing{}, ObjectReference(), BoundedArray<double>(Bounds{0, 1})};
  for (const Variant& title : titles) {
    EXPECT_EQ(RaisedNumber([&] { log.Initialise(u"/library/other.log", 1, true, false, title); }), 13);
  }
  EXPECT_EQ(log.Filepath(), kLogPath);
  EXPECT_FALSE(log.LogDiagnostics());
}

// --- AddEntry --------------------------------------------------------------------------------------------

TEST_F(LogTest, EachActionHasItsLine) {
  struct Row {
    std::int32_t action;
    bool logsDiagnostics;
    std::string bytes;
    bool isException;
  };
  const Row rows[] = {
      {0, false, "entry\r\n", false},
      {1, false, "entry\r\n", false},
      {2, false, "* Warning: entry\r\n", true},
      {3, false, "* Warning: entry Error: 0 \r\n", true},
      {4, false, "", false},
      {4, true, "entry\r\n", false},
      {5, true, "", false},
      {-1, true, "", false},
      {std::numeric_limits<std::int32_t>::max(), true, "", false},
  };
  for (const Row& row : rows) {
    CLog fresh(fake.platform);
    fresh.Initialise(kLogPath, kNoBound, row.logsDiagnostics, true, u"");
    EntryRecorder recorder(fresh);
    fake.files.Replace(kLogPath, "");
    const auto action = static_cast<ELogAction>(row.action);
    fresh.AddEntry(u"entry", action);
    EXPECT_EQ(Bytes(), row.bytes) << row.action;
    EXPECT_EQ(fresh.LogContainsExceptions(), row.isException) << row.action;
    std::vector<LoggedEntry> expected;
    if (!row.bytes.empty()) {
      expected.push_back({FromUtf8(row.bytes.substr(0, row.bytes.size() - 2)), row.action});
    }
    EXPECT_EQ(recorder.entries, expected);
  }
}

TEST_F(LogTest, EntriesAreMadeOneLineUnlessExact) {
  struct Row {
    TextView entry;
    std::string normal;
  };
  const Row rows[] = {
      {u"a\r\nb", "a: b"},
      {u"x\t\ty", "x y"},
      {u"a\r\n\r\n\r\nb", "a: b"},
      {u"a\r\rb", "a: b"},
      {u"a\n\nb", "ab"},
      {u"a\n\rb", "a: b"},
      {u"a\r\r\nb", "a: : b"},
      {u"\r\na", ": a"},
      {u"a\r\n", "a"},
      {u"a\n\r\r\n\n", "a"},
      {u"a \r\n", "a "},
      {u"a\t\r\n", "a "},
      {u"a\r\n\t", "a:  "},
      {u"\t", " "},
      {u" ", " "},
      {u"a\t \tb", "a   b"},
      {u"caf\u00E9 \u20AC \u65E5", "caf\xE9 \x80 ?"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Added(row.entry, logNormal), row.normal + "\r\n") << ToUtf8(row.entry);
    EXPECT_EQ(Added(row.entry, logExact), ToCodePage(fake.locale, row.entry) + "\r\n");
    EXPECT_EQ(Added(row.entry, logException), "* Warning: " + row.normal + "\r\n");
  }
}

/// What an entry that is not exact becomes, one step after the other.
Text LineStepByStep(Text line) {
  while (line.ends_with(u'\r') || line.ends_with(u'\n')) line.pop_back();
  line = test::ReplaceMultiStepByStep(line, u"\r\n", u": ");
  line = test::ReplaceMultiStepByStep(line, u"\r", u": ");
  line = test::ReplaceMultiStepByStep(line, u"\n", u"");
  return test::ReplaceMultiStepByStep(line, u"\t", u" ");
}

TEST_F(LogTest, EntriesFollowTheStepsForAllShortTextsOfFiveUnits) {
  constexpr TextView kUnits = u"a\r\n\t ";
  constexpr std::size_t kLongest = 6;
  log.Initialise(u"/nowhere/host.log", kNoBound, false, true, u"");
  EntryRecorder recorder(log);
  for (std::size_t length = 1, count = kUnits.size(); length <= kLongest; ++length, count *= kUnits.size()) {
    for (std::size_t number = 0; number < count; ++number) {
      Text entry;
      for (std::size_t rest = number; entry.size() < length; rest /= kUnits.size()) {
        entry += kUnits[rest % kUnits.size()];
      }
      recorder.entries.clear();
      for (const ELogAction action : {logExact, logNormal, logException}) log.AddEntry(entry, action);
      std::vector<LoggedEntry> expected{{entry, logExact}};
      if (const Text line = LineStepByStep(entry); !line.empty()) expected.push_back({line, logNormal});
      expected.push_back({LineStepByStep(u"* Warning: " + entry), logException});
      ASSERT_EQ(recorder.entries, expected);
    }
  }
}

TEST_F(LogTest, EveryOtherUnitOfAnEntryStaysAsItIs) {
  using namespace std::string_view_literals;
  EntryRecorder recorder(log);
  EXPECT_EQ(Added(u"\0a\0\x1Fz\0"sv, logNormal), "\0a\0\x1Fz\0\r\n"sv);
  EXPECT_EQ(Added(u"\0\r\n\0"sv, logNormal), "\0: \0\r\n"sv);
  EXPECT_EQ(Added(u"\xD83D\xDE00 \xDE00\u0416\u00A0", logNormal), "?? ??\xA0\r\n");
  EXPECT_EQ(recorder.entries.at(0).message, u"\0a\0\x1Fz\0"sv);
  EXPECT_EQ(recorder.entries.at(2).message, u"\xD83D\xDE00 \xDE00\u0416\u00A0");
}

TEST_F(LogTest, ALongEntryIsOneLine) {
  Text entry;
  for (int i = 0; i < 100'000; ++i) entry += u"word\r\n\t";
  const std::string bytes = Added(entry, logNormal);
  EXPECT_EQ(bytes.size(), 100'000 * 7 + 2u);
  EXPECT_TRUE(bytes.starts_with("word:  word:  "));
  EXPECT_TRUE(bytes.ends_with("word:  \r\n"));
}

TEST_F(LogTest, AnEntryOfLineEndsAloneIsNotWritten) {
  EntryRecorder recorder(log);
  for (const TextView entry : {u"\r\n", u"\n", u"\r\r\n\n"}) {
    EXPECT_EQ(Added(entry, logNormal), "");
    EXPECT_TRUE(recorder.entries.empty());
  }
  EXPECT_EQ(Added(u"\r\n", logExact), "\r\n\r\n");
  EXPECT_EQ(Added(u"\r\n", logException), "* Warning: \r\n");
}

TEST_F(LogTest, DeliberateAddEntryWritesNoEmptyEntryWhateverTheAction) {
  Initialise(kNoBound, true);
  EntryRecorder recorder(log);
  for (const std::int32_t action : {0, 1, 4, 5}) {
    log.AddEntry(u"", static_cast<ELogAction>(action));
    EXPECT_FALSE(log.LogContainsExceptions());
  }
  for (const ELogAction action : {logException, logExceptionError}) {
    CLog fresh(fake.platform);
    fresh.Initialise(kLogPath, kNoBound, true, true, u"");
    fresh.AddEntry(u"", action);
    EXPECT_TRUE(fresh.LogContainsExceptions()) << "an empty warning counts as one";
  }
  EXPECT_EQ(Bytes(), "(missing)");
  EXPECT_TRUE(recorder.entries.empty());
}

TEST_F(LogTest, DeliberateAddEntryMakesTheTabsOfAWarningWithItsErrorBlanks) {
  EXPECT_EQ(Added(u"entry", logExceptionError), "* Warning: entry Error: 0 \r\n");
  EXPECT_EQ(Added(u"entry\r\n", logExceptionError), "* Warning: entry:  Error: 0 \r\n");
}

TEST_F(LogTest, ADiagnosticEntryIsMadeOneLine) {
  Initialise(kNoBound, true);
  EXPECT_EQ(Added(u"a\r\nb\tc", logDiagnostic), "a: b c\r\n");
}

TEST_F(LogTest, EntriesAreAppendedWithoutAStart) {
  fake.files.Replace(kLogPath, "before");
  log.AddEntry(u"one", logNormal);
  log.AddEntry(u"two", logExact);
  EXPECT_EQ(Bytes(), "beforeone\r\ntwo\r\n");
}

// --- The error that the caller is handling ---------------------------------------------------------------

/// What a warning says when `raise` has raised what is being handled.
template <typename Raise>
std::string WarningWhileHandling(CLog& log, test::FakePlatform& fake, Raise raise) {
  fake.files.Replace(kLogPath, "");
  try {
    raise();
  } catch (...) {
    log.AddEntry(u"entry", logExceptionError);
  }
  return fake.files.Content(kLogPath);
}

TEST_F(LogTest, AWarningTellsTheErrorThatIsBeingHandled) {
  const auto warning = [this](auto raise) { return WarningWhileHandling(log, fake, raise); };
  EXPECT_EQ(warning([] { throw LibraryError(kPathNotFound); }),
            "* Warning: entry Error: 76 Path not found\r\n");
  EXPECT_EQ(warning([] { throw LibraryError(-2147220991, u"source", u"two\r\nlines\tof \u00E9\r\n"); }),
            "* Warning: entry Error: -2147220991 two: lines of \xE9\r\n");
  EXPECT_EQ(warning([] { throw std::runtime_error("host"); }),
            "* Warning: entry Error: -2147467259 host\r\n");
  EXPECT_EQ(warning([] { throw std::bad_alloc(); }), "* Warning: entry Error: 7 Out of memory\r\n");
  EXPECT_EQ(warning([] { throw std::length_error("x"); }), "* Warning: entry Error: 7 Out of memory\r\n");
  EXPECT_EQ(warning([] { throw 42; }), "* Warning: entry Error: -2147467259 \r\n");
}

TEST_F(LogTest, TheInnermostErrorIsTold) {
  try {
    throw LibraryError(kOverflow);
  } catch (const LibraryError&) {
    EXPECT_EQ(WarningWhileHandling(log, fake, [] { throw LibraryError(kDiskFull); }),
              "* Warning: entry Error: 61 Disk full\r\n");
    log.AddEntry(u"outer", logExceptionError);
    EXPECT_TRUE(Bytes().ends_with("* Warning: outer Error: 6 Overflow\r\n"));
  }
}

TEST_F(LogTest, TheCallersErrorIsStillItsOwnAfterwards) {
  log.Initialise(u"/nowhere/host.log", kNoBound, false, true, u"");
  log.EntryLogged.Connect([](TextView, ELogAction) { throw LibraryError(kOverflow); });
  const auto logWhileHandling = [&] {
    try {
      throw LibraryError(kTypeMismatch, u"Host.Work", u"own");
    } catch (const LibraryError&) {
      for (const ELogAction action : {logNormal, logException, logExceptionError}) log.AddEntry(u"x", action);
      throw;
    }
  };
  EXPECT_EQ(ErrorRaisedBy(logWhileHandling), (RaisedError{13, u"Host.Work", u"own"}));
}

// --- Banners ---------------------------------------------------------------------------------------------

TEST_F(LogTest, ALoggingPeriodHasABannerAtBothEnds) {
  EntryRecorder recorder(log);
  fake.process.seconds = 1000.25;
  log.StartLogging();
  log.AddEntry(u"entry", logNormal);
  fake.process.seconds = 1012.5;
  log.StopLogging();
  EXPECT_EQ(Bytes(), test::kBanner + "entry\r\n \r\nLog stopped. Time from log start = 12.3 secs\r\n \r\n");
  const Text rule = FromUtf8(test::kRule);
  EXPECT_EQ(recorder.entries, (std::vector<LoggedEntry>{{rule, 1},
                                                        {u"TITLE", 1},
                                                        {u"Log started at 09:05 21/11/2026", 1},
                                                        {rule, 1},
                                                        {u"entry", 1},
                                                        {u" ", 1},
                                                        {u"Log stopped. Time from log start = 12.3 secs", 1},
                                                        {u" ", 1}}));
}

TEST_F(LogTest, DeliberateStartLoggingWritesABlankForTheTabBeforeTheDate) {
  log.StartLogging();
  EXPECT_EQ(Bytes().find('\t'), std::string::npos);
  EXPECT_NE(Bytes().find("Log started at 09:05 21/11/2026\r\n"), std::string::npos);
}

/// The elapsed time that is written for two readings of the clock.
class ElapsedTimeTest : public LogTest {
 protected:
  std::string Elapsed(double start, double stop) {
    fake.files.Replace(kLogPath, "");
    fake.process.seconds = start;
    log.StartLogging();
    fake.process.seconds = stop;
    log.StopLogging();
    const std::string before = "Log stopped. Time from log start = ";
    const std::string bytes = Bytes();
    const std::size_t at = bytes.find(before) + before.size();
    return bytes.substr(at, bytes.find(" secs\r\n", at) - at);
  }
};

TEST_F(ElapsedTimeTest, ElapsedTimeHasOneDecimalAndRoundsAHalfAwayFromZero) {
  struct Row {
    double elapsed;
    std::string text;
  };
  const Row rows[] = {
      {0, "0.0"},
      {12, "12.0"},
      {0.04, "0.0"},
      {0.05, "0.1"},
      {0.15, "0.2"},
      {0.25, "0.3"},
      {0.35, "0.4"},
      {1.45, "1.5"},
      {2.449999, "2.4"},
      {0.95, "1.0"},
      {9.95, "10.0"},
      {86399.95, "86400.0"},
      {-0.05, "-0.1"},
      {-0.25, "-0.3"},
      {-0.04, "0.0"},
      {-86399.9, "-86399.9"},
      {1e-9, "0.0"},
      {4096.123456, "4096.1"},
      {1e15, "1000000000000000.0"},
  };
  fake.locale.decimalSeparator = u',';
  for (const Row& row : rows) EXPECT_EQ(Elapsed(0, row.elapsed), row.text) << row.elapsed;
}

TEST_F(ElapsedTimeTest, TheDifferenceOfTheReadingsIsRoundedByItsDecimalValue) {
  EXPECT_EQ(Elapsed(50000.1, 50000.25), "0.2") << "0.15 but for what the readings cannot hold";
  EXPECT_EQ(Elapsed(0.1, 0.35), "0.3");
}

TEST_F(ElapsedTimeTest, DeliberateStopLoggingGivesANegativeTimeForAPeriodThatSpansMidnight) {
  EXPECT_EQ(Elapsed(86399, 1), "-86398.0");
}

TEST_F(ElapsedTimeTest, StoppingWithoutAStartCountsFromMidnight) {
  fake.process.seconds = 3600.5;
  log.StopLogging();
  EXPECT_EQ(Bytes(), " \r\nLog stopped. Time from log start = 3600.5 secs\r\n \r\n");
}

TEST_F(ElapsedTimeTest, EachStartBeginsTheTimeAnew) {
  EXPECT_EQ(Elapsed(10, 20), "10.0");
  EXPECT_EQ(Elapsed(30, 31), "1.0");
  log.StopLogging();
  EXPECT_TRUE(Bytes().ends_with(
      "start = 1.0 secs\r\n \r\n \r\nLog stopped. Time from log start = 1.0 secs\r\n \r\n"));
}

TEST_F(LogTest, StartingForgetsWarnings) {
  for (const bool appends : {true, false}) {
    Initialise(kNoBound, false, appends);
    log.AddEntry(u"x", logException);
    EXPECT_TRUE(log.LogContainsExceptions());
    log.StartLogging();
    EXPECT_FALSE(log.LogContainsExceptions());
  }
  log.AddEntry(u"x", logExceptionError);
  log.AddEntry(u"x", logNormal);
  log.StopLogging();
  EXPECT_TRUE(log.LogContainsExceptions());
}

// --- View and Text ---------------------------------------------------------------------------------------

TEST_F(LogTest, DeliberateViewGivesTheShellZerosAndIgnoresWhatComesOfIt) {
  for (const std::int32_t result : {33, 2, 0}) {
    fake.desktop.openResult = result;
    EXPECT_TRUE(log.View(u"not used"));
  }
  ASSERT_EQ(fake.desktop.openedDocuments.size(), 3u);
  const DocumentRequest& request = fake.desktop.openedDocuments.front();
  EXPECT_EQ(request.document, kLogPath);
  EXPECT_EQ(request.verb, u"open");
  EXPECT_EQ(request.parameters, u"0");
  EXPECT_EQ(request.folder, u"0");
  EXPECT_EQ(request.showMode, 5);
  EXPECT_FALSE(request.ownedByDesktop);
  EXPECT_TRUE(fake.desktop.messages.empty());
}

TEST_F(LogTest, DeliberateViewFailsInSilence) {
  class FailingDesktop : public test::RecordingDesktop {
    std::int32_t OpenDocument(const DocumentRequest&) override { throw LibraryError(kDeviceInputOutput); }
  };
  FailingDesktop desktop;
  Platform platform = fake.With(desktop);
  CLog failing(platform);
  failing.Initialise(kLogPath, kNoBound, false, true, u"");
  EXPECT_FALSE(failing.View(u"a message"));
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(LogTest, TextIsTheFileWithoutOneLineEnd) {
  EXPECT_EQ(log.Text(), u"") << "missing";
  log.AddEntry(u"one", logNormal);
  log.AddEntry(u"caf\u00E9\r\n", logExact);
  EXPECT_EQ(log.Text(), u"one\r\ncaf\u00E9\r\n");
  fake.files.Replace(kLogPath, "");
  EXPECT_EQ(log.Text(), u"") << "empty";
  EXPECT_TRUE(fake.desktop.messages.empty());
}

}  // namespace
}  // namespace vorquill21
