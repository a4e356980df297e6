#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// What becomes of an entry of the log, see CLog::AddEntry.
enum ELogAction : std::int32_t {
  logExact = 0,           ///< written as it is, line ends and tabs included
  logNormal = 1,          ///< written as one line
  logException = 2,       ///< a warning
  logExceptionError = 3,  ///< a warning with the error that is being handled
  logDiagnostic = 4,      ///< written only when diagnostics are logged
};

/// The event that a log raises for each entry. Handlers are called one after the other, in the order in which
/// they were connected, on the thread that adds the entry, before AddEntry returns.
///
/// A handler may do what it likes. What it throws is ignored. It may add entries, for which the event is
/// raised in turn, up to 100 levels deep; entries below are written in silence. It may connect handlers,
/// which are called from the next entry on, and disconnect handlers, which are not called any more. It may
/// destroy the log; then no other handler is called. When memory for the call runs out, no handler is called.
class VORQUILL21_API LogEvent {
 public:
  /// `asMessage` is the line as it was written, without its end; it lasts until the handler returns.
  using Handler = std::function<void(TextView asMessage, ELogAction aeLogAction)>;

  /// Names a connected handler; never 0.
  using Connection = std::uint64_t;

  LogEvent() = default;
  LogEvent(const LogEvent&) = delete;
  LogEvent& operator=(const LogEvent&) = delete;
  ~LogEvent();

  /// Has `handler` called for each entry from now on; an empty one is passed over.
  Connection Connect(Handler handler);

  /// Forgets a handler; one that is not connected (any more) is passed over.
  void Disconnect(Connection connection) noexcept;

 private:
  friend class CLog;

  struct Slot {
    Connection connection;
    Handler handler;
    bool isConnected = true;
  };

  /// Calls all handlers. Nothing is asked of this object once a handler has destroyed it.
  void Raise(TextView message, ELogAction action) const noexcept;

  std::vector<std::shared_ptr<Slot>> slots_;
  Connection lastConnection_ = 0;
  std::shared_ptr<int> depth_ = MakeShared<int>(0);  // outlives this object while it is raised
};

}  // namespace vorquill21
