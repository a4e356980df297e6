#include "vorquill21/log/log_event.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>

#include "tests/log/log_fixture.hpp"

namespace vorquill21 {
namespace {

using test::EntryRecorder;
using test::kLogPath;
using test::kNoBound;
using test::LoggedEntry;
using test::LogTest;

class LogEventTest : public LogTest {
 protected:
  /// A handler that notes its name.
  LogEvent::Handler Noting(char name) {
    return [this, name](TextView, ELogAction) { called += name; };
  }

  std::string called;
};

TEST_F(LogEventTest, HandlersAreCalledInTheOrderOfTheirConnection) {
  log.EntryLogged.Connect(Noting('a'));
  log.EntryLogged.Connect(Noting('b'));
  log.EntryLogged.Connect(Noting('a'));
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(called, "aba");
}

TEST_F(LogEventTest, DisconnectedHandlersAreNotCalled) {
  const auto a = log.EntryLogged.Connect(Noting('a'));
  const auto b = log.EntryLogged.Connect(Noting('b'));
  EXPECT_NE(a, 0u);
  EXPECT_NE(a, b);
  log.EntryLogged.Disconnect(a);
  log.EntryLogged.Disconnect(a);
  log.EntryLogged.Disconnect(0);
  log.EntryLogged.Disconnect(b + 1);
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(called, "b");
  const auto c = log.EntryLogged.Connect(Noting('c'));
  EXPECT_NE(c, a) << "a connection is never used again";
}

TEST_F(LogEventTest, WhatAHandlerHoldsIsFreedWhenItIsDisconnected) {
  auto held = std::make_shared<int>();
  const auto connection = log.EntryLogged.Connect([held](TextView, ELogAction) {});
  EXPECT_EQ(held.use_count(), 2);
  log.EntryLogged.Disconnect(connection);
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(LogEventTest, AnEmptyHandlerIsPassedOver) {
  log.EntryLogged.Connect({});
  log.EntryLogged.Connect(Noting('a'));
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(called, "a");
}

TEST_F(LogEventTest, TheLineIsTheOneThatWasWritten) {
  EntryRecorder recorder(log);
  log.AddEntry(u"a\r\nb", logNormal);
  log.AddEntry(u"a\r\nb", logExact);
  log.AddEntry(u"\u65E5", logException);
  EXPECT_EQ(recorder.entries,
            (std::vector<LoggedEntry>{{u"a: b", 1}, {u"a\r\nb", 0}, {u"* Warning: \u65E5", 2}}));
}

TEST_F(LogEventTest, TheEventIsRaisedAfterWriting) {
  log.EntryLogged.Connect([this](TextView, ELogAction) { called = Bytes(); });
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(called, "x\r\n");
}

TEST_F(LogEventTest, WhatAHandlerThrowsIsIgnored) {
  log.EntryLogged.Connect([](TextView, ELogAction) { throw LibraryError(kOverflow); });
  log.EntryLogged.Connect([](TextView, ELogAction) { throw std::runtime_error("host"); });
  log.EntryLogged.Connect([](TextView, ELogAction) { throw 42; });
  log.EntryLogged.Connect(Noting('a'));
  EXPECT_NO_THROW(log.AddEntry(u"x", logNormal));
  EXPECT_NO_THROW(log.StartLogging());
  EXPECT_EQ(called, "aaaaa");
  EXPECT_EQ(Bytes(), "x\r\n" + test::kBanner);
}

TEST_F(LogEventTest, EntriesThatHandlersAddAreLoggedAndRaised) {
  EntryRecorder recorder(log);
  log.EntryLogged.Connect([this](TextView message, ELogAction action) {
    if (action == logException) log.AddEntry(Text(u"seen ").append(message), logNormal);
  });
  log.AddEntry(u"x", logException);
  EXPECT_EQ(Bytes(), "* Warning: x\r\nseen * Warning: x\r\n");
  EXPECT_EQ(recorder.entries, (std::vector<LoggedEntry>{{u"* Warning: x", 2}, {u"seen * Warning: x", 1}}));
}

TEST_F(LogEventTest, AHandlerThatAnswersEveryEntryWithAnotherComesToAnEnd) {
  log.EntryLogged.Connect([this](TextView, ELogAction) { log.AddEntry(u"again", logNormal); });
  EntryRecorder recorder(log);
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(recorder.entries.size(), 100u);
  EXPECT_EQ(Bytes().size(), 3 + 100 * 7u) << "the deepest entry is written, too";
  recorder.entries.clear();
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(recorder.entries.size(), 100u) << "the next entry begins at the top again";
}

TEST_F(LogEventTest, AHandlerConnectedByAHandlerHearsOfTheNextEntry) {
  bool isConnected = false;
  log.EntryLogged.Connect([&](TextView, ELogAction) {
    if (!isConnected) log.EntryLogged.Connect(Noting('b'));
    isConnected = true;
    for (int i = 0; i < 100; ++i) log.EntryLogged.Connect({});
  });
  log.EntryLogged.Connect(Noting('a'));
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(called, "a");
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(called, "aab");
}

TEST_F(LogEventTest, AHandlerMayDisconnectItselfAndOthers) {
  LogEvent::Connection self = 0;
  LogEvent::Connection later = 0;
  const std::string name = "a handler whose name is too long for a small buffer";
  std::string after;
  self = log.EntryLogged.Connect([&, name](TextView, ELogAction) {
    log.EntryLogged.Disconnect(self);
    log.EntryLogged.Disconnect(later);
    after = name;  // what the handler holds is still there
  });
  later = log.EntryLogged.Connect(Noting('b'));
  log.EntryLogged.Connect(Noting('c'));
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(after, name);
  EXPECT_EQ(called, "c");
  after.clear();
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(after, "");
  EXPECT_EQ(called, "cc");
}

/// What a log does whose handler destroys it at the first entry.
template <typename Operation>
void DestroyDuring(test::FakePlatform& fake, Operation operation) {
  auto log = std::make_unique<CLog>(fake.platform);
  log->Initialise(kLogPath, kNoBound, false, false, u"TITLE");
  int calls = 0;
  TextView lastMessage;
  log->EntryLogged.Connect([&](TextView message, ELogAction) {
    log.reset();
    lastMessage = message;
    EXPECT_FALSE(lastMessage.empty()) << "the line outlives the log";
    EXPECT_EQ(Text(message).size(), message.size());
  });
  log->EntryLogged.Connect([&](TextView, ELogAction) { ++calls; });
  operation(*log);
  EXPECT_EQ(log, nullptr);
  EXPECT_EQ(calls, 0) << "no other handler is called";
}

TEST_F(LogEventTest, AHandlerMayDestroyTheLog) {
  DestroyDuring(fake,
                [](CLog& doomed) { doomed.AddEntry(u"a line that is long enough for the heap", logExact); });
  EXPECT_EQ(Bytes(), "a line that is long enough for the heap\r\n");
  DestroyDuring(fake, [](CLog& doomed) { doomed.StartLogging(); });
  EXPECT_EQ(Bytes(), test::kRule + "\r\n") << "no more of the banner";
  DestroyDuring(fake, [](CLog& doomed) { doomed.StopLogging(); });
  EXPECT_EQ(Bytes(), test::kRule + "\r\n \r\n");
}

TEST_F(LogEventTest, AHandlerMayDestroyTheLogSeveralLevelsDeep) {
  auto doomed = std::make_unique<CLog>(fake.platform);
  doomed->Initialise(kLogPath, kNoBound, false, true, u"");
  int level = 0;
  doomed->EntryLogged.Connect([&](TextView, ELogAction) {
    if (++level < 5) {
      doomed->AddEntry(u"deeper", logNormal);
    } else {
      doomed.reset();
    }
  });
  doomed->AddEntry(u"x", logNormal);
  EXPECT_EQ(level, 5);
  EXPECT_EQ(Bytes(), "x\r\ndeeper\r\ndeeper\r\ndeeper\r\ndeeper\r\n");
}

TEST_F(LogEventTest, AHandlerMayRedirectTheLogWithinABanner) {
  bool isRedirected = false;
  log.EntryLogged.Connect([&](TextView, ELogAction) {
    if (!isRedirected)
      log.Initialise(u"/library/other.log", kNoBound, false, true, u"ANOTHER TITLE, A LONG ONE");
    isRedirected = true;
  });
  log.StartLogging();
  EXPECT_EQ(Bytes() + fake.files.Content(u"/library/other.log"), test::kBanner);
}

TEST_F(LogEventTest, AHandlerMayDeleteTheFile) {
  log.EntryLogged.Connect([this](TextView, ELogAction) { fake.files.Delete(kLogPath); });
  log.AddEntry(u"x", logNormal);
  EXPECT_EQ(Bytes(), "(missing)");
  log.StartLogging();
  EXPECT_EQ(Bytes(), "(missing)");
}

TEST_F(LogEventTest, AHandlerSeesTheErrorThatTheCallerIsHandling) {
  std::optional<std::int32_t> seen;
  log.Initialise(u"/nowhere/host.log", kNoBound, false, true, u"");
  log.EntryLogged.Connect([&](TextView, ELogAction) {
    try {
      throw;
    } catch (const LibraryError& error) {
      seen = error.Number();
    }
  });
  try {
    throw LibraryError(kTypeMismatch);
  } catch (const LibraryError&) {
    log.AddEntry(u"x", logNormal);
  }
  EXPECT_EQ(seen, 13);
}

}  // namespace
}  // namespace vorquill21
