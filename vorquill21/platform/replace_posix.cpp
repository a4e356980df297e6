#include "vorquill21/platform/replace_posix.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <optional>

#include "vorquill21/platform/open_file_posix.hpp"
#include "vorquill21/platform/path_posix.hpp"

namespace vorquill21 {
namespace {

constexpr mode_t kModeOfNewFiles = 0666;
constexpr mode_t kModeWhileWritten = 0600;
constexpr mode_t kAllModeBits = 07777;
constexpr mode_t kPermissionBits = 0777;
constexpr auto kUnchanged = static_cast<uid_t>(-1);

/// The new content on its way: a file beside the target that goes away unless it takes the target's place.
class TemporaryFile {
 public:
  TemporaryFile(FileCalls& calls, const std::string& folder) : calls_(calls), folder_(folder), file_(calls) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!path_.empty()) calls_.Unlink(path_.c_str());
  }

  /// False when the folder takes no new file.
  bool Make(mode_t mode) {
    constexpr int kMostNames = 1000;
    const std::string front = folder_ + ".vorquill21-" + std::to_string(::getpid()) + '-';
    for (int number = 0; number < kMostNames; ++number) {
      const std::string path = front + std::to_string(number) + ".tmp";
      if (file_.Open(path, O_WRONLY | O_CREAT | O_EXCL, mode)) {
        path_ = path;
        return true;
      }
      const RuntimeErrorNumber error = LastError(Subject::kFile);
      if (error == kPermissionDenied) return false;
      if (error != kPathFileAccess) throw LibraryError(error);
    }
    throw LibraryError(kPathFileAccess);
  }

  /// Takes the mode of `old`, and its owner where the process may give files away. False when this file
  /// system refuses the mode.
  bool TakeAttributesOf(const struct stat& old) {
    const int descriptor = file_.Descriptor();
    const auto setOwner = [&](uid_t user) {
      return Uninterrupted([&] { return calls_.SetOwner(descriptor, user, old.st_gid); }) == 0;
    };
    const bool sameOwner = setOwner(old.st_uid);
    if (!sameOwner) setOwner(kUnchanged);
    const mode_t mode = old.st_mode & (sameOwner ? kAllModeBits : kPermissionBits);
    return Permitted(Uninterrupted([&] { return calls_.SetMode(descriptor, mode); }));
  }

  void Store(std::string_view bytes) {
    file_.WriteAll(bytes);
    file_.Sync();
    file_.Close();
  }

  /// Takes the place of `target` in one step; false when that may not be replaced.
  bool RenameTo(const std::string& target) {
    if (!Permitted(calls_.Rename(path_.c_str(), target.c_str()))) return false;
    path_.clear();
    return true;
  }

 private:
  static bool Permitted(int result) {
    if (result != -1) return true;
    const RuntimeErrorNumber error = LastError(Subject::kFile);
    if (error == kPermissionDenied) return false;
    throw LibraryError(error);
  }

  FileCalls& calls_;
  std::string folder_;
  std::string path_;  // empty while there is no file to remove
  OpenFile file_;
};

/// Nothing when the folder may be written but not read.
std::optional<OpenFile> OpenFolder(FileCalls& calls, const std::string& path) {
  OpenFile folder(calls);
  if (folder.Open(path, O_RDONLY | O_DIRECTORY)) return folder;
  const RuntimeErrorNumber error = LastError(Subject::kFolder);
  if (error == kPathFileAccess) return std::nullopt;
  throw LibraryError(error);
}

/// File systems that cannot sync a folder say so with error 52.
void SyncFolder(OpenFile& folder) {
  try {
    folder.Sync();
  } catch (const LibraryError& error) {
    if (error.Number() != kBadFileName) throw;
  }
}

/// False when this folder or file can only be written in place.
bool ReplaceByRenaming(FileCalls& calls, const std::string& target, const std::optional<struct stat>& old,
                       std::string_view bytes) {
  const std::string folderPath = FolderOf(target);
  std::optional<OpenFile> folder = OpenFolder(calls, folderPath);
  TemporaryFile temporary(calls, folderPath);
  if (!temporary.Make(old ? kModeWhileWritten : kModeOfNewFiles)) return false;
  if (old && !temporary.TakeAttributesOf(*old)) return false;
  temporary.Store(bytes);
  if (!temporary.RenameTo(target)) return false;
  if (folder) SyncFolder(*folder);
  return true;
}

/// Has the disk keep room for `size` bytes, where it can.
void Reserve(FileCalls& calls, const OpenFile& file, std::size_t size) {
  if (size == 0) return;
  const auto length = static_cast<off_t>(size);
  const int result = Uninterrupted([&] { return calls.Reserve(file.Descriptor(), length); });
  if (result == -1 && LastError(Subject::kFile) == kDiskFull) throw LibraryError(kDiskFull);
}

void WriteFileInPlace(FileCalls& calls, OpenFile& file, off_t oldLength, std::string_view bytes) {
  try {
    Reserve(calls, file, bytes.size());
    file.WriteAll(bytes);
  } catch (const LibraryError&) {
    calls.SetLength(file.Descriptor(), oldLength);
    throw;
  }
  file.SetLength(static_cast<off_t>(bytes.size()));
  file.Sync();
}

void WriteInPlace(FileCalls& calls, OpenFile& file, const struct stat& status, std::string_view bytes) {
  if (S_ISREG(status.st_mode)) {
    WriteFileInPlace(calls, file, status.st_size, bytes);
  } else {
    file.WriteAll(bytes);
  }
  file.Close();
}

}  // namespace

std::string FollowLinks(FileCalls& calls, std::string path) {
  constexpr int kMostLinks = 40;
  std::array<char, 4096> buffer;
  for (int links = 0; links <= kMostLinks; ++links) {
    const ssize_t size = calls.ReadLink(path.c_str(), buffer.data(), buffer.size());
    if (size == -1) {
      // What is there is no link, or nothing is there; whatever else may be wrong shows on opening.
      const RuntimeErrorNumber error = LastError(Subject::kFile);
      if (error == kBadFileName || error == kFileNotFound) return path;
      throw LibraryError(error);
    }
    const std::string leadsTo(buffer.data(), static_cast<std::size_t>(size));
    path = leadsTo.starts_with('/') ? leadsTo : FolderOf(path) + leadsTo;
  }
  throw LibraryError(kBadFileName);
}

void ReplaceContent(FileCalls& calls, const std::string& path, std::string_view bytes) {
  const std::string target = FollowLinks(calls, path);
  OpenFile oldFile(calls);
  if (!oldFile.Open(target, O_WRONLY | O_NOFOLLOW)) {
    const RuntimeErrorNumber error = LastError(Subject::kFile);
    if (error != kFileNotFound) throw LibraryError(error);
    if (!ReplaceByRenaming(calls, target, std::nullopt, bytes)) throw LibraryError(kPermissionDenied);
    return;
  }
  const struct stat old = oldFile.Status();
  // A file without a name was replaced by somebody else a moment ago.
  const bool hasSeveralNames = old.st_nlink > 1;
  if (S_ISREG(old.st_mode) && !hasSeveralNames && ReplaceByRenaming(calls, target, old, bytes)) return;
  WriteInPlace(calls, oldFile, old, bytes);
}

}  // namespace vorquill21
