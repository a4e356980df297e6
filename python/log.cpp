#include "vorquill21/log/log.hpp"

#include <new>
#include <stdexcept>

#include "python/binding.hpp"
#include "python/cycles.hpp"
#include "python/module.hpp"

namespace vorquill21::python {
namespace {

/// The event of a log, which it keeps alive.
struct EntryLoggedOf {
  std::shared_ptr<CLog> log;
};

/// The member of ELogAction. Entries are written, and the event is raised, for its actions alone.
py::object ActionOf(ELogAction action) {
  return py::module_::import("vorquill21").attr("ELogAction")(static_cast<std::int32_t>(action));
}

/// A handler of Python's. What it raises is ignored, but shown to sys.unraisablehook.
LogEvent::Handler HandlerOf(const std::shared_ptr<py::object>& callable) {
  return [callable](TextView message, ELogAction action) {
    const py::gil_scoped_acquire lock;
    try {
      (*callable)(message, ActionOf(action));
    } catch (py::error_already_set& raised) {
      raised.discard_as_unraisable(*callable);
    }
  };
}

LogEvent::Connection Connect(const EntryLoggedOf& event, const py::object& handler) {
  if (PyCallable_Check(handler.ptr()) == 0) throw py::type_error("a handler is callable");
  const auto kept = Kept(handler);
  const auto connection =
      Running<Calls::kExclusive>(event.log, [&] { return event.log->EntryLogged.Connect(HandlerOf(kept)); });
  CompanionOf(event.log).handlers[connection] = kept;
  return connection;
}

void Disconnect(const EntryLoggedOf& event, LogEvent::Connection connection) {
  CompanionOf(event.log).handlers.erase(connection);
  Running<Calls::kExclusive>(event.log, [&] { event.log->EntryLogged.Disconnect(connection); });
}

/// The handlers of a log in the eyes of the collector.
struct HandlersOfLog {
  template <typename Visitor>
  static int Visit(const std::shared_ptr<CLog>& log, const Visitor& visit) {
    if (!IsHeldByPythonAlone(log)) return 0;
    for (const auto& [connection, handler] : CompanionOf(log).handlers) {
      const auto kept = handler.lock();
      if (const int stop = kept ? visit(kept->ptr()) : 0) return stop;
    }
    return 0;
  }

  static void Clear(const std::shared_ptr<CLog>& log) {
    const auto handlers = std::move(CompanionOf(log).handlers);
    for (const auto& [connection, handler] : handlers) log->EntryLogged.Disconnect(connection);
  }
};

/// The error that Python is handling, nothing when there is none.
py::object HandledError() {
  return py::module_::import("sys").attr("exc_info")()[py::int_(1)];
}

/// Throws an error of Python's as C++ has it.
[[noreturn]] void ThrowInCpp(const py::object& error) {
  const py::module_ builtins = py::module_::import("builtins");
  if (py::isinstance(error, py::module_::import("vorquill21").attr("LibraryError"))) {
    throw LibraryError(IntegerOf(error.attr("number")), py::cast<Text>(error.attr("source")),
                       py::cast<Text>(error.attr("description")));
  }
  if (py::isinstance(error, builtins.attr("MemoryError"))) throw std::bad_alloc();
  throw std::runtime_error(ToUtf8(py::cast<Text>(py::str(error))));
}

/// The log looks for the error that is being handled: Python's becomes C++'s while it does.
void AddEntry(const std::shared_ptr<CLog>& log, TextView entry, ELogAction action) {
  const auto add = [&] { Running<Calls::kExclusive>(log, [&] { log->AddEntry(entry, action); }); };
  const py::object handled = HandledError();
  if (action != logExceptionError || handled.is_none()) return add();
  try {
    ThrowInCpp(handled);
  } catch (const std::exception&) {
    add();
  }
}

}  // namespace

void AddLog(py::module_& module) {
  py::class_<EntryLoggedOf>(
      module, "LogEvent",
      "The event that a log raises for each entry that it writes. Handlers are called one after\n"
      "the other with the line and its ELogAction; what they raise is ignored.")
      .def("Connect", &Connect, "handler"_a,
           "Connect(self, handler)\n--\n\n"
           "Has handler(asMessage, aeLogAction) called for each entry from now on.\n"
           "Returns the number that Disconnect takes.")
      .def(
          "Disconnect", &Disconnect, "connection"_a,
          "Disconnect(self, connection)\n--\n\nForgets a handler; one that is not connected is passed over.");

  using C = CLog;
  Class<C, Calls::kExclusive> bound(
      module, "CLog",
      "A log file: a line for each entry, banners at start and stop, warnings marked, and an event.",
      SeenByCollector<C, HandlersOfLog>());
  bound.Constructor();
  bound.OfPybind()
      .def_property_readonly(
          "EntryLogged", [](const std::shared_ptr<C>& log) { return EntryLoggedOf{log}; },
          "The event that each entry raises: connect a callable to it.")
      .def("AddEntry", &AddEntry, "asLogEntry"_a, "aeAction"_a,
           Description(
               "AddEntry", {"asLogEntry", "aeAction"}, {}, false,
               "Adds an entry to the end of the file and raises EntryLogged.\n\n"
               "With logExceptionError the error that is being handled follows: number and description of a\n"
               "LibraryError, 7 for MemoryError, -2147467259 and its text for any other.")
               .c_str());
  bound.Property<&C::Filepath>("Filepath", "The path of the file.")
      .Method<&C::Initialise>(
          "Initialise", "Sets the file, the length that a start cuts it to, and what is written.",
          "asLogFilePath"_a, "anMaxFileChars"_a, "abLogDiagnostics"_a, "abAppendEntries"_a, "asLogTitle"_a)
      .Property<&C::LogContainsExceptions>("LogContainsExceptions",
                                           "Whether a warning was added since the last start.")
      .Property<&C::LogDiagnostics>("LogDiagnostics", "Whether diagnostic entries are written.")
      .Method<&C::StartLogging>("StartLogging", "Begins a logging period with a banner.")
      .Method<&C::StopLogging>("StopLogging", "Ends a logging period with the time since its start.")
      .Method<&C::View>("View", "Asks the desktop to open the file; asFailMessage is not used.",
                        "asFailMessage"_a = "")
      .Property<&C::Text>("Text", "The content of the file without one line end at its end.");
}

}  // namespace vorquill21::python
