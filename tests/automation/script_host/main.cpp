/// Runs a script for a test: script_host [--manifest FILE] SCRIPT [ARGUMENT...]
///
/// SCRIPT is a .vbs or a .js file; what it may call is said in host.hpp. With a manifest the objects of the
/// libraries that it names can be made without registering them. The last line is "N checks, M failed", and
/// the exit code is 0 when no check failed and no error was left unhandled, 2 for a wrong call. A dialog that
/// nothing answers ends the run after a minute.
#include <cstdio>
#include <cstdlib>

#include "tests/automation/script_host/host.hpp"
#include "tests/automation/script_host/script.hpp"

namespace script_host {
namespace {

std::vector<std::wstring> CommandLine() {
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> texts(arguments + 1, arguments + count);
  LocalFree(arguments);
  return texts;
}

void CALLBACK EndRun(HWND, UINT, UINT_PTR, DWORD) {
  std::puts("a dialog stayed unanswered");
  std::fflush(stdout);
  std::_Exit(1);
}

/// Only while a dialog waits does a script wait, and timers run.
void EndWhenADialogStays() {
  constexpr UINT kMilliseconds = 60'000;
  SetTimer(nullptr, 0, kMilliseconds, &EndRun);
}

void ActivateManifest(const std::filesystem::path& manifest) {
  const std::wstring source = std::filesystem::absolute(manifest).wstring();
  const std::wstring folder = std::filesystem::absolute(manifest).parent_path().wstring();
  ACTCTXW request{};
  request.cbSize = sizeof request;
  request.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
  request.lpSource = source.c_str();
  request.lpAssemblyDirectory = folder.c_str();
  const HANDLE context = CreateActCtxW(&request);
  ULONG_PTR cookie = 0;
  if (context == INVALID_HANDLE_VALUE || !ActivateActCtx(context, &cookie))
    throw HostError{E_FAIL, L"cannot activate " + source};
}

int Run(std::vector<std::wstring> arguments) {
  if (arguments.size() >= 2 && arguments[0] == L"--manifest") {
    ActivateManifest(arguments[1]);
    arguments.erase(arguments.begin(), arguments.begin() + 2);
  }
  if (arguments.empty()) {
    std::fputs("script_host [--manifest FILE] SCRIPT [ARGUMENT...]\n", stderr);
    return 2;
  }
  Script script(arguments[0]);
  Host host(script, arguments[0], {arguments.begin() + 1, arguments.end()});
  script.Run(host);
  return host.Finish() ? 0 : 1;
}

}  // namespace
}  // namespace script_host

int main() {
  SetErrorMode(SEM_FAILCRITICALERRORS |
               SEM_NOGPFAULTERRORBOX);  // a crash ends the run, nobody would close its box
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  script_host::EndWhenADialogStays();
  int code = 2;
  try {
    code = script_host::Run(script_host::CommandLine());
  } catch (const script_host::HostError& error) {
    std::printf("%s\n", script_host::ToUtf8(error.description).c_str());
  }
  CoUninitialize();
  return code;
}
