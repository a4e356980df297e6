#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// One entry of a folder listing.
struct DirectoryEntry {
  Text name;  ///< bare name, without folder
  bool isFolder = false;
  bool isHidden = false;
  bool isSystem = false;

  /// An ordinary file: no folder, neither hidden nor system.
  bool IsOrdinaryFile() const noexcept { return !isFolder && !isHidden && !isSystem; }
};

/// A file open for reading; closed by its destructor.
class VORQUILL21_API ByteReader {
 public:
  virtual ~ByteReader() = default;

  /// Length of the file in bytes when it was opened; 0 for what has no length (a device, a pipe).
  virtual std::uint64_t Length() const = 0;

  /// Reads the next bytes into `buffer` and returns how many; 0 only at the end of the file (or for an empty
  /// buffer). Error 57 when the device fails.
  virtual std::size_t Read(std::span<char> buffer) = 0;

  /// Passes over the next `count` bytes, or what is left of the file. A file on a disk is not read for that;
  /// what only gives its bytes in order is read and thrown away. Error 57 when the device fails.
  virtual void Skip(std::uint64_t count);
};

/// What the library asks of a file system. In every path "\" separates folders; where the operating system's
/// own separator is "/", both do. Each operation either does its work or raises a LibraryError of a runtime
/// number (52, 53, 57, 61, 67, 70, 75, 76) and leaves nothing behind: no handle, no temporary file.
class VORQUILL21_API Files {
 public:
  virtual ~Files() = default;

  /// The entries that `pattern` names, in the operating system's order (ignoring case where that is ours to
  /// choose). The last part of the pattern may hold the wildcards "*" and "?", which match ignoring case; a
  /// wildcard listing never holds "." or "..". Nothing found, a missing folder among it, is an empty list.
  virtual std::vector<DirectoryEntry> List(TextView pattern) = 0;

  /// True when `path` names a folder. A path that cannot be looked at is False.
  virtual bool FolderExists(TextView path) = 0;

  /// Opens a file: 53 when it is missing, 76 when its folder is, 70 when it may not be read or is a folder.
  virtual std::unique_ptr<ByteReader> OpenForReading(TextView path) = 0;

  /// Makes `bytes` the whole content of the file, creating it when it is missing. The old content stays until
  /// the new one is safely stored: it goes to a temporary file in the same folder, is synced, and is renamed
  /// into place, following symbolic links and keeping the mode. Where that cannot be done (a device, several
  /// hard links, a folder without write permission) the file is written in place.
  virtual void Replace(TextView path, std::string_view bytes) = 0;

  /// Adds `bytes` to the end of the file, creating it when it is missing, with a single write. When not all
  /// of it could be written the file is cut back to the length it had, and removed if it was missing.
  virtual void Append(TextView path, std::string_view bytes) = 0;

  /// Deletes the ordinary files that `pattern` names: 53 when there is none.
  virtual void Delete(TextView pattern) = 0;

  /// Creates one folder: 75 when it exists already, is a root or has the empty name, 76 when its parent is
  /// missing.
  virtual void MakeFolder(TextView path) = 0;

  /// Removes an empty folder: 76 when it is missing, 75 when it is not empty or may not be removed.
  virtual void RemoveFolder(TextView path) = 0;
};

/// All bytes from where `reader` stands to the end of its file; there may be more or fewer of them than were
/// expected.
VORQUILL21_API std::string ReadRest(ByteReader& reader, std::uint64_t expectedCount);

/// All bytes of a file, read through OpenForReading.
VORQUILL21_API std::string ReadWholeFile(Files& files, TextView path);

}  // namespace vorquill21
