// A host without windows: imports measured columns, checks and fits them, stores them in a data file, reads
// that back, tells what was refused and why, logs what it does, and runs the library's self-tests.
//
//   import_and_store [DATA_FOLDER [OUTPUT_FOLDER]]
//
// The data are looked for beside the program, and file and log are written there, unless other folders are
// named.
// The exit code is 0 when everything was as it must be.

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "fitting.hpp"
#include "importing.hpp"
#include "report.hpp"
#include "session.hpp"
#include "session_settings.hpp"
#include "storing.hpp"
#include "terminal_desktop.hpp"

namespace {

using namespace vorquill21;

void ImportAndStore(const example::Session& session, TextView dataFolder, TextView outputFolder,
                    example::Expectations& expectations) {
  bool isUsable = false;
  const example::Calibration calibration =
      example::ImportCalibration(session, dataFolder, expectations, isUsable);
  example::ImportFaultyColumns(session, dataFolder, expectations);
  if (!isUsable) return;
  const example::CalibrationFit fit = example::FitCalibration(session, calibration, dataFolder, expectations);
  example::InvertReadings(session, calibration, expectations);
  const Text path = Text(outputFolder).append(u"/calibration.txt");
  example::StoreCalibration(session, calibration, fit, path, expectations);
  example::ReadCalibrationBack(session, calibration, path, expectations);
}

/// Does `work` within a logging period and mirrors what is logged.
template <typename Work>
void WithLog(CLog& log, TextView path, Work work) {
  constexpr std::int32_t kMaxFileChars = 100'000;
  log.Initialise(path, kMaxFileChars, /*abLogDiagnostics=*/false, /*abAppendEntries=*/false,
                 u"import_and_store");
  const auto mirror = log.EntryLogged.Connect(
      [](TextView message, ELogAction) { example::Say(Text(u"[log] ").append(message)); });
  log.StartLogging();
  work();
  log.StopLogging();
  log.EntryLogged.Disconnect(mirror);
}

void Run(TextView dataFolder, TextView outputFolder, example::Expectations& expectations) {
  Platform& native = Platform::Native();
  example::TerminalDesktop desktop;
  example::SessionSettings settings;
  Platform platform(native.GetFiles(), desktop, native.GetLocale(), native.GetProcess(), settings);
  const example::Session session(platform);

  WithLog(session.Log(), Text(outputFolder).append(u"/import_and_store.log"),
          [&] { ImportAndStore(session, dataFolder, outputFolder, expectations); });

  example::SayTitle(u"Self-tests");
  constexpr std::int32_t kRunAndReport = 2;
  session.library.Initialise(BoundedArray<Variant>(std::vector<Variant>{kRunAndReport}));
  expectations.Expect(desktop.LastStyle() == kInformation, u"the self-tests pass");

  example::SayTitle(u"Summary");
  const Variant lines = session.library.LibString()->SplitMulti(session.Log().Text(), u"\r\n");
  example::Say(u"the log has " + example::Shown(ArrayBounds(lines).upper + 1) + u" lines" +
               (session.Log().LogContainsExceptions() ? u", warnings among them" : u""));
  example::Say(example::Shown(desktop.MessageCount()) + u" message boxes were shown");
  example::Say(expectations.AllHold() ? u"everything was as it must be" : u"something was not as it must be");
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const std::filesystem::path ownFolder = std::filesystem::absolute(arguments[0]).parent_path();
  const std::string dataFolder = argumentCount > 1 ? arguments[1] : (ownFolder / "data").string();
  const std::string outputFolder = argumentCount > 2 ? arguments[2] : ownFolder.string();
  example::Expectations expectations;
  try {
    Run(FromUtf8(dataFolder), FromUtf8(outputFolder), expectations);
  } catch (const std::exception& error) {
    std::cerr << "import_and_store: " << error.what() << '\n';
    return EXIT_FAILURE;
  }
  return expectations.AllHold() ? EXIT_SUCCESS : EXIT_FAILURE;
}
