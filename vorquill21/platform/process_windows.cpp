#include "vorquill21/platform/process_windows.hpp"

#include <windows.h>

#include <algorithm>

#include "vorquill21/platform/final_separators.hpp"
#include "vorquill21/platform/wide_windows.hpp"

namespace vorquill21 {
namespace {

constexpr TextView kWhiteSpace = u" \t";

/// The module, library or program, that this very code lies in.
HMODULE OwnModule() {
  static const char kAddressInside = 0;
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&kAddressInside), &module);
  return module;
}

Text PathOf(HMODULE module) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const std::size_t length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return FromWide(path.substr(0, length));
    path.resize(path.size() * 2);
  }
}

/// Empty when it is missing.
Text EnvironmentVariable(const wchar_t* name) {
  std::wstring value(MAX_PATH, L'\0');
  for (;;) {
    const std::size_t length = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
    if (length < value.size()) return FromWide(value.substr(0, length));
    value.resize(length);
  }
}

}  // namespace

TextView ArgumentPart(TextView commandLine) noexcept {
  bool quoted = false;
  std::size_t at = 0;
  while (at < commandLine.size() && (quoted || kWhiteSpace.find(commandLine[at]) == TextView::npos)) {
    if (commandLine[at] == u'"') quoted = !quoted;
    ++at;
  }
  commandLine.remove_prefix(at);
  commandLine.remove_prefix(std::min(commandLine.find_first_not_of(kWhiteSpace), commandLine.size()));
  return commandLine;
}

Text WindowsProcess::CommandLine() const {
  return Text(ArgumentPart(FromWide(GetCommandLineW())));
}

double WindowsProcess::SecondsSinceMidnight() const {
  SYSTEMTIME now;
  GetLocalTime(&now);
  const int wholeSeconds = (now.wHour * 60 + now.wMinute) * 60 + now.wSecond;
  return wholeSeconds + now.wMilliseconds / 1000.0;
}

Text WindowsProcess::LibraryFolder() const {
  const Text named = EnvironmentVariable(L"VORQUILL21_LIBRARY_FOLDER");
  if (!named.empty()) return WithoutFinalSeparators(named);
  const Text path = PathOf(OwnModule());
  return path.substr(0, std::min(path.rfind(u'\\'), path.size()));
}

}  // namespace vorquill21
