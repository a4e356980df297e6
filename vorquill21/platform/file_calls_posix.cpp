#include "vorquill21/platform/file_calls_posix.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace vorquill21 {

int FileCalls::Open(const char* path, int flags, mode_t mode) {
  return ::open(path, flags, mode);
}

int FileCalls::Close(int file) {
  return ::close(file);
}

int FileCalls::Status(int file, struct stat& status) {
  return ::fstat(file, &status);
}

ssize_t FileCalls::Read(int file, char* buffer, std::size_t size) {
  return ::read(file, buffer, size);
}

ssize_t FileCalls::Write(int file, const char* bytes, std::size_t size) {
  return ::write(file, bytes, size);
}

off_t FileCalls::Position(int file) {
  return ::lseek(file, 0, SEEK_CUR);
}

off_t FileCalls::Move(int file, off_t distance) {
  return ::lseek(file, distance, SEEK_CUR);
}

int FileCalls::SetLength(int file, off_t length) {
  return ::ftruncate(file, length);
}

int FileCalls::Reserve(int file, off_t length) {
#if defined(__linux__)
  return ::fallocate(file, 0, 0, length);
#else
  (void)file;
  (void)length;
  errno = EOPNOTSUPP;
  return -1;
#endif
}

int FileCalls::Sync(int file) {
  return ::fsync(file);
}

int FileCalls::SetMode(int file, mode_t mode) {
  return ::fchmod(file, mode);
}

int FileCalls::SetOwner(int file, uid_t user, gid_t group) {
  return ::fchown(file, user, group);
}

int FileCalls::StatusAt(const char* path, struct stat& status) {
  return ::stat(path, &status);
}

int FileCalls::LinkStatusAt(const char* path, struct stat& status) {
  return ::lstat(path, &status);
}

ssize_t FileCalls::ReadLink(const char* path, char* buffer, std::size_t size) {
  return ::readlink(path, buffer, size);
}

int FileCalls::Rename(const char* from, const char* to) {
  return ::rename(from, to);
}

int FileCalls::Unlink(const char* path) {
  return ::unlink(path);
}

int FileCalls::MakeFolder(const char* path, mode_t mode) {
  return ::mkdir(path, mode);
}

int FileCalls::RemoveFolder(const char* path) {
  return ::rmdir(path);
}

DIR* FileCalls::OpenListing(const char* path) {
  return ::opendir(path);
}

int FileCalls::NextName(DIR* listing, std::string& name) {
  errno = 0;
  const dirent* entry = ::readdir(listing);
  if (entry == nullptr) return errno == 0 ? 0 : -1;
  name = entry->d_name;
  return 1;
}

int FileCalls::CloseListing(DIR* listing) {
  return ::closedir(listing);
}

}  // namespace vorquill21
