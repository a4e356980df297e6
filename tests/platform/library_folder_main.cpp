// A host of the shared library: ends well when the library says that it lies in the folder of the argument, a
// full path.

#include <cstdio>
#include <filesystem>

#include "vorquill21/platform/platform.hpp"

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) return 2;
  // The library must know where it lies even when it was loaded by a relative path.
  vorquill21::Process& process = vorquill21::Platform::Native().GetProcess();
  std::filesystem::current_path("/");
  const std::string folder = vorquill21::ToUtf8(process.LibraryFolder());
  std::printf("%s\n", folder.c_str());
  return folder == std::filesystem::canonical(arguments[1]) ? 0 : 1;
}
