#pragma once

#include <functional>
#include <string>

#include "failure.hpp"
#include "output/result.hpp"
#include "output/terminal.hpp"
#include "program/notations.hpp"
#include "program/quiet_desktop.hpp"
#include "program/user_files.hpp"

namespace vorquill21::tool {

/// What a run works with: the standard streams, the files that the user names, and the library's platform on
/// top of both, on which numbers have a decimal point.
class Session {
 public:
  Session();

  Terminal& GetTerminal() noexcept { return terminal_; }
  Files& GetFiles() noexcept { return files_; }
  QuietDesktop& GetDesktop() noexcept { return desktop_; }
  Locale& GetLocale() noexcept { return locale_; }
  Platform& GetPlatform() noexcept { return platform_; }

  /// Whether results are printed for programs.
  bool wantsJson = false;

  /// Has the reading of files tell `progress` how far it has come; nullptr ends that.
  void ReportTo(Progress* progress) noexcept { files_.ReportTo(progress); }

  /// Writes a whole file, or to standard output for "-".
  void WriteFile(const std::string& path, std::string_view bytes);

  /// All bytes of a file, or of standard input for "-".
  std::string ReadFile(const std::string& path);

 private:
  Terminal terminal_;
  UserFiles files_;
  QuietDesktop desktop_;
  NotationLocale locale_;
  Platform platform_;
};

/// The failure to read `path`.
Failure CannotRead(const std::string& path, const LibraryError& error);

/// What a command does once the command line is understood: its result goes into `Result`.
using Work = std::function<ExitCode(Session&, Result&)>;

/// kFindings when there are any.
ExitCode CodeOfFindings(const Result& result);

}  // namespace vorquill21::tool
