#include "vorquill21/platform/process_posix.hpp"

#include <dlfcn.h>
#include <sys/auxv.h>
#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/platform/final_separators.hpp"

namespace vorquill21 {
namespace {

constexpr const char* kProgramFile = "/proc/self/exe";

/// Anything that lies in the library file.
constexpr char kInLibrary = 0;

/// The file that was loaded where `address` lies; where that is the program itself, the program's file.
std::filesystem::path FileLoadedAt(const void* address) {
  Dl_info library{};
  Dl_info program{};
  const auto* programHeaders = reinterpret_cast<const void*>(::getauxval(AT_PHDR));
  const bool found = ::dladdr(address, &library) != 0 && library.dli_fname != nullptr;
  const bool isProgram = ::dladdr(programHeaders, &program) != 0 && program.dli_fbase == library.dli_fbase;
  return found && !isProgram ? library.dli_fname : kProgramFile;
}

Text FindLibraryFolder() {
  const std::filesystem::path file = FileLoadedAt(&kInLibrary);
  std::error_code error;
  std::filesystem::path real = std::filesystem::canonical(file, error);
  if (error) real = file;
  const std::filesystem::path folder = real.parent_path();
  return folder == folder.root_path() ? Text() : FromUtf8(folder.string());
}

}  // namespace

Text JoinedArguments(std::string_view block) {
  std::string line;
  bool isProgram = true;
  while (!block.empty()) {
    const std::string_view argument = block.substr(0, block.find('\0'));
    block.remove_prefix(std::min(argument.size() + 1, block.size()));
    if (!isProgram) {
      if (!line.empty()) line += ' ';
      const bool quoted = argument.empty() || argument.find(' ') != std::string_view::npos;
      const std::string_view quote = quoted ? "\"" : "";
      line.append(quote).append(argument).append(quote);
    }
    isProgram = false;
  }
  return FromUtf8(line);
}

PosixProcess::PosixProcess(Files& files) : files_(files), libraryFolder_(FindLibraryFolder()) {}

Text PosixProcess::CommandLine() const {
  return JoinedArguments(ReadWholeFile(files_, u"/proc/self/cmdline"));
}

Text PosixProcess::LibraryFolder() const {
  const char* const named = std::getenv("VORQUILL21_LIBRARY_FOLDER");
  return named == nullptr || *named == '\0' ? libraryFolder_ : WithoutFinalSeparators(FromUtf8(named));
}

double PosixProcess::SecondsSinceMidnight() const {
  constexpr double kSecondsPerMinute = 60;
  constexpr double kSecondsPerHour = 3600;
  constexpr double kNanosecondsPerSecond = 1e9;
  struct timespec now {};
  ::clock_gettime(CLOCK_REALTIME, &now);
  struct tm local {};
  ::localtime_r(&now.tv_sec, &local);
  return local.tm_hour * kSecondsPerHour + local.tm_min * kSecondsPerMinute + local.tm_sec +
         static_cast<double>(now.tv_nsec) / kNanosecondsPerSecond;
}

}  // namespace vorquill21
