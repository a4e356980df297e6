#include "vorquill21/platform/files_windows.hpp"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "vorquill21/platform/error_windows.hpp"
#include "vorquill21/platform/file_system_object_windows.hpp"
#include "vorquill21/platform/wide_windows.hpp"
#include "vorquill21/platform/wildcard.hpp"

namespace vorquill21 {
namespace {

constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

void Require(bool done, Subject subject) {
  if (!done) throw LibraryError(LastError(subject));
}

/// The path for a system call, which would take no notice of what follows a NUL.
std::wstring SystemPath(TextView path) {
  if (path.find(u'\0') != TextView::npos) throw LibraryError(kBadFileName);
  return ToWide(path);
}

/// Length of the front of `path` that names the folder, with its separator.
std::size_t FolderLength(TextView path) {
  return path.find_last_of(u"\\/:") + 1;
}

/// A file of the system, closed with its owner.
class OpenFile {
 public:
  explicit OpenFile(FileCalls& calls) : calls_(calls) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { Discard(); }

  NativeHandle Handle() const { return handle_; }

  /// Takes over what the system gave; false when that is nothing.
  bool Hold(NativeHandle handle) {
    handle_ = handle;
    return handle != nullptr;
  }
  void HoldOrRaise(NativeHandle handle, Subject subject) { Require(Hold(handle), subject); }

  void Close() { Require(calls_.Close(std::exchange(handle_, nullptr)), Subject::kFile); }
  void Discard() {
    if (handle_ != nullptr) calls_.Close(std::exchange(handle_, nullptr));
  }

 private:
  FileCalls& calls_;
  NativeHandle handle_ = nullptr;
};

std::uint32_t TransferSize(std::size_t size) {
  return static_cast<std::uint32_t>(std::min(size, kLargestTransfer));
}

void WriteAll(FileCalls& calls, NativeHandle file, std::string_view bytes) {
  while (!bytes.empty()) {
    std::uint32_t count = 0;
    Require(calls.Write(file, bytes.data(), TransferSize(bytes.size()), count), Subject::kFile);
    if (count == 0) throw LibraryError(kDeviceInputOutput);
    bytes.remove_prefix(count);
  }
}

/// Writes over the old content. Room is had first, so that a full disk leaves that content whole.
void WriteInPlace(FileCalls& calls, TextView path, std::string_view bytes) {
  OpenFile file(calls);
  file.HoldOrRaise(calls.Open(SystemPath(path), FileCalls::Opening::kForWritingOrMade), Subject::kNewFile);
  const std::optional<FileTraits> traits = calls.Traits(file.Handle());
  if (traits && traits->length < bytes.size()) {
    Require(calls.SetLength(file.Handle(), bytes.size()), Subject::kFile);
  }
  try {
    WriteAll(calls, file.Handle(), bytes);
  } catch (const LibraryError&) {
    if (traits) calls.SetLength(file.Handle(), traits->length);
    throw;
  }
  if (traits) {
    Require(calls.SetLength(file.Handle(), bytes.size()), Subject::kFile);
    Require(calls.Flush(file.Handle()), Subject::kFile);
  }
  file.Close();
}

/// The new content of a file on its way: a file beside the old one, which goes away unless it takes its
/// place.
class Replacement {
 public:
  explicit Replacement(FileCalls& calls) : calls_(calls), file_(calls) {}
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement() {
    if (path_.empty()) return;
    file_.Discard();
    calls_.Delete(path_);
  }

  /// False when the folder takes no new file.
  bool MakeBeside(const std::wstring& target, std::uint32_t attributes) {
    constexpr int kMostNames = 100;
    for (int attempt = 0; attempt < kMostNames; ++attempt) {
      std::wstring path = target.substr(0, FolderLength(FromWide(target))) + FreshName(attempt);
      if (file_.Hold(calls_.Make(path, attributes))) {
        path_ = std::move(path);
        target_ = target;
        return true;
      }
      const RuntimeErrorNumber error = LastError(Subject::kNewFile);
      if (error == kPermissionDenied) return false;
      if (error != kPathFileAccess) throw LibraryError(error);
    }
    throw LibraryError(kPathFileAccess);
  }

  bool TakePermissionsOf(const OpenFile& old) { return calls_.CopyPermissions(old.Handle(), file_.Handle()); }

  /// False when the old file cannot be renamed over.
  bool TakePlaceWith(std::string_view bytes) {
    WriteAll(calls_, file_.Handle(), bytes);
    Require(calls_.Flush(file_.Handle()), Subject::kFile);
    file_.Close();
    if (!calls_.Rename(path_, target_)) {
      const RuntimeErrorNumber error = LastError(Subject::kFile);
      if (error == kPermissionDenied) return false;
      throw LibraryError(error);
    }
    path_.clear();
    return true;
  }

 private:
  static std::wstring FreshName(int attempt) {
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return L"~" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(GetCurrentThreadId()) +
           L"-" + std::to_wstring(ticks.QuadPart + attempt) + L".tmp";
  }

  FileCalls& calls_;
  std::wstring target_;
  std::wstring path_;  // empty unless the file is there and has not taken its place
  OpenFile file_;
};

/// Makes the file that is to take the place of `path`; false when that one has to be written in place.
bool Prepare(Replacement& replacement, FileCalls& calls, TextView path) {
  const std::wstring systemPath = SystemPath(path);
  OpenFile old(calls);
  if (!old.Hold(calls.Open(systemPath, FileCalls::Opening::kForWriting))) {
    const RuntimeErrorNumber error = LastError(Subject::kFile);
    if (error != kFileNotFound) throw LibraryError(error);
    const bool isLinkToNothing = calls.IsThere(systemPath);
    return !isLinkToNothing && replacement.MakeBeside(systemPath, FILE_ATTRIBUTE_NORMAL);
  }
  const std::optional<FileTraits> traits = calls.Traits(old.Handle());
  if (!traits || traits->links > 1) return false;
  const std::optional<std::wstring> target = calls.FinalPath(old.Handle());
  return target && replacement.MakeBeside(*target, traits->attributes) && replacement.TakePermissionsOf(old);
}

/// Opens a file for appending, or makes it when it is missing; true when it is this call's own.
bool OpenForAppending(FileCalls& calls, const std::wstring& path, OpenFile& file) {
  if (file.Hold(calls.Open(path, FileCalls::Opening::kForWriting))) return false;
  const RuntimeErrorNumber error = LastError(Subject::kFile);
  if (error != kFileNotFound) throw LibraryError(error);
  const bool isLinkToNothing = calls.IsThere(path);
  if (!isLinkToNothing && file.Hold(calls.Open(path, FileCalls::Opening::kForWritingWhenMade))) return true;
  file.HoldOrRaise(calls.Open(path, FileCalls::Opening::kForWritingOrMade), Subject::kNewFile);
  return false;
}

/// Brings a file back to the length that it had before `written` bytes, unless somebody else has written,
/// too.
void CutBack(FileCalls& calls, NativeHandle file, std::uint64_t oldLength, std::uint64_t written) {
  const std::optional<FileTraits> now = calls.Traits(file);
  if (now && now->length == oldLength + written) calls.SetLength(file, oldLength);
}

/// One write, unless `bytes` are more than the system takes at once.
void AppendTo(FileCalls& calls, NativeHandle file, std::string_view bytes) {
  const std::optional<FileTraits> old = calls.Traits(file);
  std::uint64_t written = 0;
  while (written < bytes.size()) {
    const std::string_view rest = bytes.substr(static_cast<std::size_t>(written));
    std::uint32_t count = 0;
    const bool done = calls.WriteAtEnd(file, rest.data(), TransferSize(rest.size()), count);
    written += count;
    if (!done || count != TransferSize(rest.size())) {
      const RuntimeErrorNumber error = done ? kDeviceInputOutput : LastError(Subject::kFile);
      if (old) CutBack(calls, file, old->length, written);
      throw LibraryError(error);
    }
  }
}

/// Why a file could not be opened for reading. Some file systems tell a missing folder like a missing file.
RuntimeErrorNumber ReasonNotOpened(FileCalls& calls, TextView path) {
  const RuntimeErrorNumber error = LastError(Subject::kFile);
  const TextView folder = path.substr(0, FolderLength(path));
  const bool lacksFolder = error == kFileNotFound && !folder.empty() && !calls.IsThere(SystemPath(folder));
  return lacksFolder ? kPathNotFound : error;
}

class FileReader : public ByteReader {
 public:
  FileReader(FileCalls& calls, TextView path) : calls_(calls), file_(calls) {
    if (!file_.Hold(calls.Open(SystemPath(path), FileCalls::Opening::kForReading))) {
      throw LibraryError(ReasonNotOpened(calls, path));
    }
    const std::optional<FileTraits> traits = calls.Traits(file_.Handle());
    if (traits) length_ = traits->length;
  }

  std::uint64_t Length() const override { return length_; }

  std::size_t Read(std::span<char> buffer) override {
    if (buffer.empty()) return 0;
    std::uint32_t count = 0;
    if (calls_.Read(file_.Handle(), buffer.data(), TransferSize(buffer.size()), count)) return count;
    const RuntimeErrorNumber error = LastError(Subject::kFile);
    if (error == kInputPastEnd) return 0;
    throw LibraryError(error);
  }

  void Skip(std::uint64_t count) override {
    const bool isMoved =
        std::in_range<std::int64_t>(count) && calls_.Move(file_.Handle(), static_cast<std::int64_t>(count));
    if (!isMoved) ByteReader::Skip(count);
  }

 private:
  FileCalls& calls_;
  OpenFile file_;
  std::uint64_t length_ = 0;
};

/// The finds of a pattern, one after the other.
class Listing {
 public:
  Listing(FileCalls& calls, TextView pattern)
      : calls_(calls), handle_(calls.FindFirst(SystemPath(pattern), found_)) {
    if (handle_ != nullptr) return;
    const RuntimeErrorNumber error = LastError(Subject::kFile);
    const bool namesNothing = error == kFileNotFound || error == kPathNotFound || error == kBadFileName;
    if (!namesNothing) throw LibraryError(error);
  }
  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;
  ~Listing() { Close(); }

  /// False behind the last find.
  bool HasFind() const { return handle_ != nullptr; }
  const FoundName& Find() const { return found_; }

  void Advance() {
    if (calls_.FindNext(handle_, found_)) return;
    const RuntimeErrorNumber error = LastError(Subject::kFile);
    if (error != kFileNotFound) throw LibraryError(error);
    Close();
  }

 private:
  void Close() {
    if (handle_ != nullptr) calls_.FindClose(std::exchange(handle_, nullptr));
  }

  FileCalls& calls_;
  FoundName found_;
  NativeHandle handle_;
};

DirectoryEntry EntryOf(const FoundName& found) {
  const auto has = [&found](DWORD attribute) { return (found.attributes & attribute) != 0; };
  return {found.name, has(FILE_ATTRIBUTE_DIRECTORY), has(FILE_ATTRIBUTE_HIDDEN), has(FILE_ATTRIBUTE_SYSTEM)};
}

}  // namespace

std::vector<DirectoryEntry> WindowsFiles::List(TextView pattern) {
  // The system takes these for wildcards of its own; no name holds one.
  constexpr TextView kNeverInNames = u"<>\"";
  const TextView lastPart = pattern.substr(FolderLength(pattern));
  std::vector<DirectoryEntry> entries;
  if (lastPart.empty() || lastPart.find_first_of(kNeverInNames) != TextView::npos) return entries;
  const bool hasWildcards = HasWildcards(lastPart);
  // The system also finds by short names, and by the first three letters of an extension.
  const auto isMeant = [&](const Text& name) {
    return !hasWildcards || (name != u"." && name != u".." && MatchesWildcards(name, lastPart));
  };
  for (Listing listing(calls_, pattern); listing.HasFind(); listing.Advance()) {
    if (isMeant(listing.Find().name)) entries.push_back(EntryOf(listing.Find()));
  }
  return entries;
}

bool WindowsFiles::FolderExists(TextView path) {
  return FileSystemObjectFolderExists(path);
}

std::unique_ptr<ByteReader> WindowsFiles::OpenForReading(TextView path) {
  return std::make_unique<FileReader>(calls_, path);
}

void WindowsFiles::Replace(TextView path, std::string_view bytes) {
  {
    Replacement replacement(calls_);
    if (Prepare(replacement, calls_, path) && replacement.TakePlaceWith(bytes)) return;
  }
  WriteInPlace(calls_, path, bytes);
}

void WindowsFiles::Append(TextView path, std::string_view bytes) {
  const std::wstring systemPath = SystemPath(path);
  OpenFile file(calls_);
  const bool isMade = OpenForAppending(calls_, systemPath, file);
  try {
    AppendTo(calls_, file.Handle(), bytes);
    file.Close();
  } catch (const LibraryError&) {
    file.Discard();
    if (isMade) calls_.Delete(systemPath);
    throw;
  }
}

void WindowsFiles::Delete(TextView pattern) {
  const TextView folder = pattern.substr(0, FolderLength(pattern));
  bool found = false;
  for (const DirectoryEntry& entry : List(pattern)) {
    if (!entry.IsOrdinaryFile()) continue;
    Require(calls_.Delete(SystemPath(Text(folder) + entry.name)), Subject::kFile);
    found = true;
  }
  if (!found) throw LibraryError(kFileNotFound);
}

void WindowsFiles::MakeFolder(TextView path) {
  if (path.empty()) throw LibraryError(kPathFileAccess);
  Require(calls_.MakeFolder(SystemPath(path)), Subject::kFolder);
}

void WindowsFiles::RemoveFolder(TextView path) {
  if (path.empty()) throw LibraryError(kPathNotFound);
  Require(calls_.RemoveFolder(SystemPath(path)), Subject::kFolder);
}

}  // namespace vorquill21
