#pragma once

#include <activscp.h>

#include <filesystem>

#include "tests/automation/script_host/com.hpp"

namespace script_host {

/// A script in the engine that the extension of its file names: .vbs or .js.
class Script {
 public:
  /// Raises HostError when the engine or the file is missing.
  explicit Script(const std::filesystem::path& file);
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;
  ~Script();

  /// Runs the script to its end. `host` is what it knows as WScript; the members of that are also names of
  /// their own. False when it ended with an error, or when an event's procedure did; errors are printed with
  /// file, line, column, number, source and description.
  bool Run(IDispatch& host);

  /// The script's own procedures.
  Owned<IDispatch> Procedures() const;

 private:
  std::filesystem::path file_;
  Owned<IActiveScript> engine_;
  Owned<IActiveScriptSite> site_;
  bool hasFailed_ = false;
};

}  // namespace script_host
