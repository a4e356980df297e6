#include "program/session.hpp"

namespace vorquill21::tool {

Session::Session()
    : files_(Platform::Native().GetFiles(), terminal_),
      locale_(Platform::Native().GetLocale(), u'.'),
      platform_(files_, desktop_, locale_, Platform::Native().GetProcess(),
                Platform::Native().GetSettings()) {}

void Session::WriteFile(const std::string& path, std::string_view bytes) {
  try {
    files_.Replace(FromUtf8(path), bytes);
  } catch (const LibraryError& error) {
    throw FailureOf("cannot write " + path, error);
  }
}

std::string Session::ReadFile(const std::string& path) {
  try {
    return ReadWholeFile(files_, FromUtf8(path));
  } catch (const LibraryError& error) {
    throw CannotRead(path, error);
  }
}

Failure CannotRead(const std::string& path, const LibraryError& error) {
  if (Platform::Native().GetFiles().FolderExists(FromUtf8(path))) {
    return {ExitCode::kInputOutput, "cannot read " + path + ": it is a folder"};
  }
  return FailureOf("cannot read " + path, error);
}

ExitCode CodeOfFindings(const Result& result) {
  return result.Findings().empty() ? ExitCode::kGood : ExitCode::kFindings;
}

}  // namespace vorquill21::tool
