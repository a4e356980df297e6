// A host without windows: imports measured columns, checks them, stores them in a data file, reads that back,
// and tells what was refused and why.
//
//   import_and_store [DATA_FOLDER [OUTPUT_FOLDER]]
//
// The data are looked for beside the program, and the file is written there, unless other folders are named.
// The exit code is 0 when everything was as it must be.

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "importing.hpp"
#include "report.hpp"
#include "session_settings.hpp"
#include "storing.hpp"
#include "terminal_desktop.hpp"

namespace {

using namespace vorquill21;

void Run(TextView dataFolder, TextView outputFolder, example::Expectations& expectations) {
  Platform& native = Platform::Native();
  example::TerminalDesktop desktop;
  example::SessionSettings settings;
  Platform platform(native.GetFiles(), desktop, native.GetLocale(), native.GetProcess(), settings);

  bool isUsable = false;
  const example::Calibration calibration =
      example::ImportCalibration(platform, dataFolder, expectations, isUsable);
  example::ImportFaultyColumns(platform, dataFolder, expectations);
  if (isUsable) {
    const Text path = Text(outputFolder).append(u"/calibration.txt");
    example::StoreCalibration(platform, calibration, path, expectations);
    example::ReadCalibrationBack(platform, calibration, path, expectations);
  }

  example::SayTitle(u"Summary");
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
