#include "vorquill21/platform/files_posix.hpp"

#include <fcntl.h>

#include <algorithm>
#include <optional>
#include <tuple>
#include <utility>

#include "vorquill21/platform/open_file_posix.hpp"
#include "vorquill21/platform/path_posix.hpp"
#include "vorquill21/platform/replace_posix.hpp"
#include "vorquill21/platform/wildcard.hpp"

namespace vorquill21 {
namespace {

constexpr mode_t kModeOfNewFiles = 0666;
constexpr mode_t kModeOfNewFolders = 0777;

/// The system path of a file, which has a name.
std::string FilePath(TextView path) {
  if (path.empty()) throw LibraryError(kBadFileName);
  return SystemPath(path);
}

class FileReader : public ByteReader {
 public:
  FileReader(FileCalls& calls, OpenFile file, std::uint64_t length)
      : calls_(calls), file_(std::move(file)), length_(length) {}

  std::uint64_t Length() const override { return length_; }

  std::size_t Read(std::span<char> buffer) override {
    const ssize_t count =
        Uninterrupted([&] { return calls_.Read(file_.Descriptor(), buffer.data(), buffer.size()); });
    RequireDone(count);
    return static_cast<std::size_t>(count);
  }

  void Skip(std::uint64_t count) override {
    const bool isMoved =
        std::in_range<off_t>(count) && calls_.Move(file_.Descriptor(), static_cast<off_t>(count)) != -1;
    if (!isMoved) ByteReader::Skip(count);
  }

 private:
  FileCalls& calls_;
  OpenFile file_;
  std::uint64_t length_;
};

/// An open listing; closed by its destructor.
class Listing {
 public:
  Listing(FileCalls& calls, const std::string& folder)
      : calls_(calls), names_(calls.OpenListing(folder.c_str())) {}
  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;
  ~Listing() {
    if (names_ != nullptr) calls_.CloseListing(names_);
  }

  bool IsOpen() const { return names_ != nullptr; }

  bool Next(std::string& name) {
    const int result = calls_.NextName(names_, name);
    RequireDone(result, Subject::kFolder);
    return result == 1;
  }

 private:
  FileCalls& calls_;
  DIR* names_;
};

/// True when the last refused call was about something that does not exist; raises any other reason.
bool LastCallFoundNothing() {
  const RuntimeErrorNumber error = LastError(Subject::kFile);
  if (error == kFileNotFound || error == kPathNotFound) return true;
  throw LibraryError(error);
}

/// The entry called `name` in a folder, or nothing when it is missing. A link that leads nowhere is an entry,
/// neither file nor folder.
std::optional<DirectoryEntry> Describe(FileCalls& calls, const std::string& folder, const std::string& name) {
  const std::string path = folder + name;
  struct stat status {};
  if (calls.StatusAt(path.c_str(), status) == -1) {
    LastCallFoundNothing();
    if (calls.LinkStatusAt(path.c_str(), status) == -1) {
      LastCallFoundNothing();
      return std::nullopt;
    }
  }
  const bool isFolder = S_ISDIR(status.st_mode);
  const bool isSystem = !isFolder && !S_ISREG(status.st_mode);
  return DirectoryEntry{FromUtf8(name), isFolder, name.starts_with('.'), isSystem};
}

std::vector<DirectoryEntry> ListMatching(FileCalls& calls, const std::string& folder, TextView pattern) {
  Listing listing(calls, folder);
  if (!listing.IsOpen()) {
    LastCallFoundNothing();
    return {};
  }
  std::vector<DirectoryEntry> entries;
  std::string name;
  while (listing.Next(name)) {
    if (name == "." || name == ".." || !MatchesWildcards(FromUtf8(name), pattern)) continue;
    if (auto entry = Describe(calls, folder, name)) entries.push_back(*std::move(entry));
  }
  std::ranges::sort(
      entries, {}, [](const DirectoryEntry& entry) { return std::tuple(UpperCase(entry.name), entry.name); });
  return entries;
}

/// Opens a file for appending. When it is missing it is made, and `made` says where.
OpenFile OpenForAppending(FileCalls& calls, const std::string& path, std::string& made) {
  OpenFile file(calls);
  if (file.Open(path, O_WRONLY | O_APPEND)) return file;
  RuntimeErrorNumber error = LastError(Subject::kFile);
  if (error != kFileNotFound) throw LibraryError(error);
  const std::string target = FollowLinks(calls, path);
  if (file.Open(target, O_WRONLY | O_APPEND | O_CREAT | O_EXCL, kModeOfNewFiles)) {
    made = target;
    return file;
  }
  error = LastError(Subject::kFile);
  if (error == kPathFileAccess && file.Open(path, O_WRONLY | O_APPEND)) return file;  // made by somebody else
  throw LibraryError(error == kFileNotFound ? kPathNotFound : error);
}

/// Takes the last `count` bytes off the file again, unless somebody else has written after them.
void CutBack(FileCalls& calls, OpenFile& file, std::size_t count) {
  const struct stat status = file.Status();
  if (!S_ISREG(status.st_mode) || calls.Position(file.Descriptor()) != status.st_size) return;
  file.SetLength(status.st_size - static_cast<off_t>(count));
}

/// The reason for a write that took less than it was given: on a disk there is no room for more.
RuntimeErrorNumber ReasonOfShortWrite(const OpenFile& file) {
  return S_ISREG(file.Status().st_mode) ? kDiskFull : kDeviceInputOutput;
}

/// One write, unless `bytes` are more than the system takes at once.
void AppendTo(FileCalls& calls, OpenFile& file, std::string_view bytes) {
  std::size_t written = 0;
  try {
    do {
      const std::string_view piece = bytes.substr(written, OpenFile::kLargestWrite);
      const std::size_t count = file.WriteOnce(piece);
      written += count;
      if (count < piece.size()) throw LibraryError(ReasonOfShortWrite(file));
    } while (written < bytes.size());
  } catch (const LibraryError&) {
    if (written > 0) CutBack(calls, file, written);
    throw;
  }
}

}  // namespace

std::vector<DirectoryEntry> PosixFiles::List(TextView pattern) {
  if (NamesDrive(pattern)) return {};
  const std::string path = SystemPath(pattern);
  const std::string name = NameOf(path);
  if (name.empty()) return {};
  const std::string folder = FolderOf(path);
  const Text lastPart = FromUtf8(name);
  if (HasWildcards(lastPart)) return ListMatching(calls_, folder, lastPart);
  if (auto entry = Describe(calls_, folder, name)) return {*std::move(entry)};
  return {};
}

bool PosixFiles::FolderExists(TextView path) {
  struct stat status {};
  if (path.find(u'\0') != TextView::npos || NamesDrive(path)) return false;
  return calls_.StatusAt(SystemPath(path).c_str(), status) == 0 && S_ISDIR(status.st_mode);
}

std::unique_ptr<ByteReader> PosixFiles::OpenForReading(TextView path) {
  const std::string systemPath = FilePath(path);
  OpenFile file(calls_);
  if (!file.Open(systemPath, O_RDONLY)) {
    const RuntimeErrorNumber error = LastError(Subject::kFile);
    struct stat folder {};
    if (error == kFileNotFound) {
      RequireDone(calls_.StatusAt(FolderOf(systemPath).c_str(), folder), Subject::kFolder);
    }
    throw LibraryError(error);
  }
  const struct stat status = file.Status();
  if (S_ISDIR(status.st_mode)) throw LibraryError(kPermissionDenied);
  const auto length = S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
  return std::make_unique<FileReader>(calls_, std::move(file), length);
}

void PosixFiles::Replace(TextView path, std::string_view bytes) {
  ReplaceContent(calls_, FilePath(path), bytes);
}

void PosixFiles::Append(TextView path, std::string_view bytes) {
  std::string made;
  OpenFile file = OpenForAppending(calls_, FilePath(path), made);
  try {
    AppendTo(calls_, file, bytes);
    file.Close();
  } catch (const LibraryError&) {
    if (!made.empty()) calls_.Unlink(made.c_str());
    throw;
  }
}

void PosixFiles::Delete(TextView pattern) {
  bool deleted = false;
  for (const DirectoryEntry& entry : List(pattern)) {
    if (!entry.IsOrdinaryFile()) continue;
    const std::string path = FolderOf(SystemPath(pattern)) + ToUtf8(entry.name);
    if (calls_.Unlink(path.c_str()) == 0) {
      deleted = true;
    } else {
      LastCallFoundNothing();  // somebody else has deleted it
    }
  }
  if (!deleted) throw LibraryError(kFileNotFound);
}

void PosixFiles::MakeFolder(TextView path) {
  if (path.empty()) throw LibraryError(kPathFileAccess);
  RequireDone(calls_.MakeFolder(SystemPath(path).c_str(), kModeOfNewFolders), Subject::kFolder);
}

void PosixFiles::RemoveFolder(TextView path) {
  RequireDone(calls_.RemoveFolder(SystemPath(path).c_str()), Subject::kFolder);
}

}  // namespace vorquill21
