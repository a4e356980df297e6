#pragma once

#include <dirent.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <string>

namespace vorquill21 {

/// The system calls that the files are made of. Each may fail: it then gives -1 (or null) and the reason is
/// in errno. Tests put failing calls in their place.
class FileCalls {
 public:
  virtual ~FileCalls() = default;

  virtual int Open(const char* path, int flags, mode_t mode);
  virtual int Close(int file);
  virtual int Status(int file, struct stat& status);
  virtual ssize_t Read(int file, char* buffer, std::size_t size);
  virtual ssize_t Write(int file, const char* bytes, std::size_t size);
  /// Where the next read or write begins.
  virtual off_t Position(int file);
  /// Moves that place by `distance` and gives the new one.
  virtual off_t Move(int file, off_t distance);
  virtual int SetLength(int file, off_t length);
  /// Has the disk keep room for the first `length` bytes; a shorter file grows by NUL bytes.
  virtual int Reserve(int file, off_t length);
  /// Waits until everything written has reached the disk.
  virtual int Sync(int file);
  virtual int SetMode(int file, mode_t mode);
  virtual int SetOwner(int file, uid_t user, gid_t group);

  /// What is at the end of all links.
  virtual int StatusAt(const char* path, struct stat& status);
  /// What is there itself, be it a link.
  virtual int LinkStatusAt(const char* path, struct stat& status);
  virtual ssize_t ReadLink(const char* path, char* buffer, std::size_t size);
  virtual int Rename(const char* from, const char* to);
  virtual int Unlink(const char* path);
  virtual int MakeFolder(const char* path, mode_t mode);
  virtual int RemoveFolder(const char* path);

  virtual DIR* OpenListing(const char* path);
  /// 1 with the next name of the listing, 0 at its end, -1 when it failed.
  virtual int NextName(DIR* listing, std::string& name);
  virtual int CloseListing(DIR* listing);
};

}  // namespace vorquill21
