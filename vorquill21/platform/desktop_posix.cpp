#include "vorquill21/platform/desktop_posix.hpp"

#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "vorquill21/platform/error_posix.hpp"
#include "vorquill21/platform/path_posix.hpp"
#include "vorquill21/platform/program_posix.hpp"
#include "vorquill21/platform/user_folders_posix.hpp"

namespace vorquill21 {
namespace {

/// Codes of the shell.
enum ShellResult : std::int32_t {
  kUnknownFailure = 0,
  kMissingFile = 2,
  kMissingPath = 3,
  kAccessDenied = 5,
  kNoProgram = 31,
  kOpened = 33,
};

constexpr std::int32_t kFolderIsMissing = 1;
constexpr std::int32_t kUnknownFolder = -2147024809;  // 80070057 hexadecimal
constexpr std::int32_t kCreateFolder = 32768;

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

bool HasDisplay() {
  return IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY");
}

/// UTF-8 that every program takes: no NUL, and no byte that belongs to no character.
std::string ForDisplay(TextView text) {
  Text shown(text);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const bool isHigh = shown[i] >= 0xD800 && shown[i] <= 0xDBFF;
    const bool isLow = shown[i] >= 0xDC00 && shown[i] <= 0xDFFF;
    const bool isPair = isHigh && i + 1 < shown.size() && shown[i + 1] >= 0xDC00 && shown[i + 1] <= 0xDFFF;
    if (shown[i] == u'\0') shown[i] = u' ';
    if (isPair) {
      ++i;
    } else if (isHigh || isLow) {
      shown[i] = 0xFFFD;
    }
  }
  return ToUtf8(shown);
}

/// Line ends, CR LF or one of them, each as `lineEnd`.
std::string WithLineEnds(std::string_view text, char lineEnd) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    const bool isLineEnd = text[i] == '\r' || text[i] == '\n';
    result += isLineEnd ? lineEnd : text[i];
  }
  return result;
}

/// Some programs take "\" as the beginning of an escape.
std::string WithDoubledBackslashes(std::string_view text) {
  std::string result;
  for (const char c : text) result.append(c == '\\' ? 2 : 1, c);
  return result;
}

/// The exit code of the first dialog program that this system has.
std::optional<int> RunDialog(const std::vector<std::string>& zenity, const std::vector<std::string>& kdialog,
                             std::string* output = nullptr) {
  if (!HasDisplay()) return std::nullopt;
  const auto exitCode = RunProgram(zenity, output);
  return exitCode ? exitCode : RunProgram(kdialog, output);
}

void WriteToStandardError(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = Uninterrupted([&] { return ::write(STDERR_FILENO, bytes.data(), bytes.size()); });
    if (count <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

bool IsAddress(TextView document) {
  const std::size_t colon = document.find(u"://");
  return colon != TextView::npos && document.find_first_of(u"\\/") == colon + 1;
}

/// Why there is no document of this name, or nothing when there is one.
std::optional<ShellResult> ReasonNotToOpen(FileCalls& calls, const std::string& path) {
  struct stat status {};
  if (calls.StatusAt(path.c_str(), status) == 0) return std::nullopt;
  switch (LastError(Subject::kFile)) {
    case kFileNotFound:
      return calls.StatusAt(FolderOf(path).c_str(), status) == 0 ? kMissingFile : kMissingPath;
    case kPathNotFound:
      return kMissingPath;
    case kPermissionDenied:
      return kAccessDenied;
    default:
      return kMissingFile;
  }
}

/// What the exit code of xdg-open means.
ShellResult ResultOf(int exitCode) {
  switch (exitCode) {
    case 0:
      return kOpened;
    case 1:
      return kUnknownFailure;
    case 2:
      return kMissingFile;
    default:
      return kNoProgram;
  }
}

}  // namespace

void PosixDesktop::ShowMessage(TextView text, MessageStyle style, TextView title) {
  const std::string words = ForDisplay(text);
  const std::string heading = ForDisplay(title);
  const std::string dialogText = WithLineEnds(words, '\n');
  const bool isWarning = style == kExclamation;
  const auto exitCode =
      RunDialog({"zenity", isWarning ? "--warning" : "--info", "--no-markup", "--title=" + heading,
                 "--text=" + dialogText},
                {"kdialog", "--title=" + heading,
                 (isWarning ? "--sorry=" : "--msgbox=") + WithDoubledBackslashes(dialogText)});
  if (exitCode == 0) return;
  WriteToStandardError(WithLineEnds(heading + ": " + words, ' ') + '\n');
}

void PosixDesktop::Beep() {
  if (::isatty(STDERR_FILENO) == 1) WriteToStandardError("\a");
}

std::int32_t PosixDesktop::HandOver(const std::string& document) {
  constexpr std::chrono::milliseconds kAtOnce(0);
  std::erase_if(showing_, [&](pid_t process) { return ExitCodeOf(process, kAtOnce).has_value(); });
  // Without a desktop it might start a program that takes over the terminal.
  if (!HasDisplay()) return kNoProgram;
  const auto process = StartProgram({"xdg-open", document});
  if (!process) return kNoProgram;
  const auto exitCode = ExitCodeOf(*process, patience_);
  if (exitCode) return ResultOf(*exitCode);
  showing_.push_back(*process);
  return kOpened;
}

std::int32_t PosixDesktop::OpenDocument(const DocumentRequest& request) {
  if (IsAddress(request.document)) return HandOver(ForDisplay(request.document));
  if (request.document.empty() || request.document.find(u'\0') != Text::npos) return kMissingFile;
  if (NamesDrive(request.document)) return kMissingPath;
  std::string path = SystemPath(request.document);
  if (const auto reason = ReasonNotToOpen(calls_, path)) return *reason;
  if (!path.starts_with('/')) path.insert(0, "./");  // never taken for an option
  return HandOver(path);
}

std::optional<Text> PosixDesktop::BrowseForFolder(std::int32_t, TextView title) {
  const std::string titleOption = "--title=" + WithLineEnds(ForDisplay(title), ' ');
  std::string output;
  const auto exitCode = RunDialog({"zenity", "--file-selection", "--directory", titleOption},
                                  {"kdialog", titleOption, "--getexistingdirectory"}, &output);
  if (exitCode != 0) return std::nullopt;
  std::string_view folder = output;
  if (folder.ends_with('\n')) folder.remove_suffix(1);
  if (folder.empty()) return std::nullopt;
  return FromUtf8(folder);
}

std::int32_t PosixDesktop::SpecialFolder(std::int32_t identifier, Text& path) {
  const bool create = (identifier & kCreateFolder) != 0;
  const auto systemPath = SpecialFolderPath(files_, identifier & ~kCreateFolder);
  if (!systemPath) return kUnknownFolder;
  const Text folder = FromUtf8(*systemPath);
  if (create) {
    try {
      MakeNestedFolders(files_, folder);
    } catch (const LibraryError&) {
      return kFolderIsMissing;
    }
  }
  if (!files_.FolderExists(folder)) return kFolderIsMissing;
  path = folder;
  return 0;
}

}  // namespace vorquill21
