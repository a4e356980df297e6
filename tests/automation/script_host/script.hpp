#pragma once

#include <activscp.h>

#include <deque>
#include <filesystem>

#include "tests/automation/script_host/com.hpp"

namespace script_host {

/// An error that nothing in the script handled: its own, which ended it, or that of an event's procedure.
struct UnhandledError {
  std::string place;  // "file.vbs(LINE, COLUMN)"
  long number = 0;
  std::wstring source;
  std::wstring description;
};

/// A script in the engine that the extension of its file names: .vbs or .js.
class Script {
 public:
  /// Raises HostError when the engine or the file is missing.
  explicit Script(const std::filesystem::path& file);
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;
  ~Script();

  /// Runs the script to its end. `host` is what it knows as WScript; the members of that are also names of
  /// their own.
  void Run(IDispatch& host);

  /// Takes the oldest error that was not handled; false when there is none.
  bool TakeError(UnhandledError& error);

  /// The script's own procedures.
  Owned<IDispatch> Procedures() const;

 private:
  std::filesystem::path file_;
  Owned<IActiveScript> engine_;
  Owned<IActiveScriptSite> site_;
  std::deque<UnhandledError> errors_;
};

}  // namespace script_host
