#pragma once

#include <cstdint>
#include <exception>
#include <initializer_list>
#include <memory>

#include "vorquill21/export.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"
#include "vorquill21/log/log_event.hpp"
#include "vorquill21/platform/platform.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {

/// A log file: one line for each entry, a banner at the start and at the stop of a logging period, warnings
/// marked as such, and an event with which a host mirrors the entries. Nothing is kept in memory: each entry
/// opens the file, is added to its end with one write, and closes it again.
///
/// Lines end with CR LF and are written in the platform's 8-bit code page ("?" stands for what it does not
/// hold). A logging period looks like this, each item a line:
///
///     -----------------------------------------------------------     59 hyphens
///     TITLE                                                           left out when it is empty
///     Log started at TIME DATE                                        both in the user's short formats
///     -----------------------------------------------------------
///     ... the entries ...
///     (one blank)
///     Log stopped. Time from log start = 12.3 secs
///     (one blank)
///
/// AddEntry, StartLogging, StopLogging and View raise error 1000, "Log not initialised", with the source
/// "CLog." and their name, as long as Initialise has not been called.
class VORQUILL21_API CLog {
 public:
  /// Nothing is written or opened by making a log, nor by destroying it.
  explicit CLog(Platform& platform = Platform::Native());
  CLog(const CLog&) = delete;
  CLog& operator=(const CLog&) = delete;

  /// Raised for each entry that AddEntry writes, with its line and the action that AddEntry was called with,
  /// whether or not the file could take it. The entries of banners raise it, too.
  LogEvent EntryLogged;

  /// Adds an entry to the end of the file, which is made when it is missing, and raises EntryLogged.
  ///
  /// | aeAction          | line                                                                          |
  /// |-------------------|-------------------------------------------------------------------------------|
  /// | logExact          | the entry, unchanged: only here line ends and tabs survive                    |
  /// | logNormal         | the entry                                                                     |
  /// | logException      | "* Warning: " and the entry                                                   |
  /// | logExceptionError | "* Warning: ", the entry, " Error: ", a number, a blank and a description     |
  /// | logDiagnostic     | the entry when LogDiagnostics, otherwise nothing                              |
  /// | any other         | nothing                                                                       |
  ///
  /// All but exact lines are made one line: CR and LF at the end are removed, each run of CR LF pairs becomes
  /// ": ", then each run of CR ": ", LF is removed, and each run of tabs becomes one blank. An empty line is
  /// not written and raises no event; neither does an empty entry, whatever the action. The two warnings set
  /// LogContainsExceptions, empty ones too.
  ///
  /// Number and description are those of the error that the caller is handling (std::current_exception): of a
  /// LibraryError its own, of a lack of memory 7 and "Out of memory", of any other std::exception
  /// -2147467259 (80004005 hexadecimal) and what(), of anything else that number and nothing; 0 and nothing
  /// when no error is handled. The error goes on being the one that is handled.
  ///
  /// Errors of the file are ignored: the entry is lost, or stands there as a whole; the event is raised all
  /// the same. When memory for the line runs out, error 7 is raised. Cost: opening, one write and closing.
  void AddEntry(TextView asLogEntry, ELogAction aeAction) {
    // Asked for here, in the host's own code: a runtime linked into the library knows nothing of the host's
    // errors.
    const std::exception_ptr handled = aeAction == logExceptionError ? std::current_exception() : nullptr;
    AddEntryWhile(handled, asLogEntry, aeAction);
  }

  /// The path of the file, as Initialise was given it; empty before.
  vorquill21::Text Filepath() const {
    return TranslatingMemoryErrors([this] { return filepath_; });
  }

  /// Sets the file, the number of characters that StartLogging cuts it to, whether diagnostic entries are
  /// written, whether StartLogging keeps what an existing file holds, and the title, converted to text.
  /// Writes and opens nothing, and may be called again at any time, which redirects the log.
  ///
  /// A title that is missing, an object or an array is error 13; the log is then as it was.
  void Initialise(TextView asLogFilePath, std::int32_t anMaxFileChars, bool abLogDiagnostics,
                  bool abAppendEntries, const Variant& asLogTitle);

  /// True once a warning was added since the log was last started.
  bool LogContainsExceptions() const noexcept { return containsExceptions_; }

  /// Whether diagnostic entries are written.
  bool LogDiagnostics() const noexcept { return logDiagnostics_; }

  /// Begins a logging period: deletes the file unless entries are appended, cuts it when it is too long, and
  /// adds the banner. LogContainsExceptions is False afterwards, and the time for StopLogging begins.
  ///
  /// The file is too long when its characters and one NUL are more than the bound. Then it becomes the last
  /// characters of file and NUL, as many as the bound, and CR LF: with a bound of 100 the last 99 characters,
  /// a NUL and CR LF, so that every cut leaves a line that holds a NUL alone; with a bound of 0 just CR LF. A
  /// negative bound cuts nothing. The cut may fall within a line. It happens here alone: between two starts
  /// the file grows without bound. Only a file that CFile::FileExists finds is deleted or cut: no hidden one.
  ///
  /// Raises only error 1000; a file that cannot be deleted or cut stays as it is, and any other error ends
  /// the start in silence. Cost: reading and writing what is kept, where HasSingleBytes holds for the
  /// platform's code page; otherwise reading the whole file.
  void StartLogging();

  /// Ends a logging period: adds a blank, the time since the last StartLogging (since midnight when there was
  /// none), and a blank.
  ///
  /// The time is the difference of two readings of the clock of seconds since midnight, so a period that
  /// spans midnight has a negative one. It is written with one decimal and a point, whatever the user's
  /// separator: its 15 significant digits are rounded, a half away from zero.
  void StopLogging();

  /// Asks the desktop to open the log file with the program meant for it; does not wait, and does not ask
  /// what came of it. False only when asking raised an error. `asFailMessage` is not used.
  bool View(TextView asFailMessage = {}) const;

  /// The content of the file without one line end at its end; empty when it is missing or cannot be read.
  vorquill21::Text Text() const;

 private:
  friend class MSupport;

  /// Starts and stops a log with entries of every kind on "test log.txt" in the folder "self test" under the
  /// library folder, which it makes when it is missing, and deletes the file. It compares nothing and adds no
  /// name: it fails by raising an error, that of deleting a file which is there.
  void SelfTest_Main(FailedTests& aoFailedTests) const;

  /// AddEntry, called while `handled` (or nothing) is the error that the caller is handling.
  void AddEntryWhile(const std::exception_ptr& handled, TextView asLogEntry, ELogAction aeAction);
  void RequireInitialised(TextView routine) const;
  void AddNormalEntries(std::initializer_list<TextView> entries);
  void Clear();
  void Truncate() const;

  Platform& platform_;
  CFile files_;
  CString strings_;
  vorquill21::Text filepath_;
  std::int32_t maxFileChars_ = 0;
  bool logDiagnostics_ = false;
  bool appendEntries_ = false;
  vorquill21::Text title_;
  bool isInitialised_ = false;
  bool containsExceptions_ = false;
  double startTime_ = 0;                                   // seconds since midnight
  std::shared_ptr<const char> life_ = MakeShared<char>();  // a handler may destroy the log
};

}  // namespace vorquill21
