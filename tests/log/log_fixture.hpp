#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21::test {

inline constexpr TextView kLogPath = u"/library/host.log";
inline constexpr std::int32_t kNoBound = 1'000'000;
inline const std::string kRule(59, '-');
inline const std::string kBanner =
    kRule + "\r\nTITLE\r\nLog started at 09:05 21/11/2026\r\n" + kRule + "\r\n";

/// An entry as the event tells it.
struct LoggedEntry {
  Text message;
  std::int32_t action = 0;
  friend bool operator==(const LoggedEntry&, const LoggedEntry&) = default;
  friend void PrintTo(const LoggedEntry& entry, std::ostream* out) {
    *out << entry.action << ": " << ToUtf8(entry.message);
  }
};

/// What the event of a log tells.
class EntryRecorder {
 public:
  explicit EntryRecorder(CLog& log) {
    log.EntryLogged.Connect([this](TextView message, ELogAction action) {
      entries.push_back({Text(message), std::int32_t{action}});
    });
  }

  std::vector<LoggedEntry> entries;
};

/// A log that was initialised on a file in memory; diagnostics are off, an existing file is kept.
class LogTest : public testing::Test {
 protected:
  LogTest() { Initialise(); }

  void Initialise(std::int32_t maxFileChars = kNoBound, bool logsDiagnostics = false, bool appends = true) {
    log.Initialise(kLogPath, maxFileChars, logsDiagnostics, appends, u"TITLE");
  }

  /// The bytes of the log file; "(missing)" when there is none.
  std::string Bytes() {
    return fake.files.FileIsThere(kLogPath) ? fake.files.Content(kLogPath) : "(missing)";
  }

  /// What one entry adds to an empty log.
  std::string Added(TextView entry, ELogAction action) {
    fake.files.Replace(kLogPath, "");
    log.AddEntry(entry, action);
    return Bytes();
  }

  FakePlatform fake;
  CLog log{fake.platform};
};

}  // namespace vorquill21::test
