#include "tests/platform/faulty_calls_posix.hpp"

#include <cerrno>

namespace vorquill21::test {

bool FaultyCalls::CountsDown(const char* name) {
  if (countdown_ == 0 || --countdown_ > 0) return false;
  met_ = std::string(name) + ' ' + std::to_string(occurrences_[name]);
  return true;
}

bool FaultyCalls::Fails(const char* name, Kind kind) {
  ++occurrences_[name];
  const bool counts = fault_ == kFailure || (fault_ == kInterruption && kind == kInterruptible);
  if (!counts || !CountsDown(name)) return false;
  errno = fault_ == kInterruption ? EINTR : code_;
  return true;
}

std::size_t FaultyCalls::Shortened(const char* name, std::size_t size) {
  return fault_ == kShortCount && size > 1 && CountsDown(name) ? size / 2 : size;
}

int FaultyCalls::Open(const char* path, int flags, mode_t mode) {
  return Fails("Open", kInterruptible) ? -1 : FileCalls::Open(path, flags, mode);
}

int FaultyCalls::Close(int file) {
  const bool fails = Fails("Close", kInterruptible);
  const int code = errno;
  const int result = FileCalls::Close(file);
  if (!fails) return result;
  errno = code;
  return -1;
}

int FaultyCalls::Status(int file, struct stat& status) {
  return Fails("Status") ? -1 : FileCalls::Status(file, status);
}

ssize_t FaultyCalls::Read(int file, char* buffer, std::size_t size) {
  return Fails("Read", kInterruptible) ? -1 : FileCalls::Read(file, buffer, Shortened("Read", size));
}

ssize_t FaultyCalls::Write(int file, const char* bytes, std::size_t size) {
  return Fails("Write", kInterruptible) ? -1 : FileCalls::Write(file, bytes, Shortened("Write", size));
}

off_t FaultyCalls::Position(int file) {
  return Fails("Position") ? -1 : FileCalls::Position(file);
}

off_t FaultyCalls::Move(int file, off_t distance) {
  return Fails("Move") ? -1 : FileCalls::Move(file, distance);
}

int FaultyCalls::SetLength(int file, off_t length) {
  return Fails("SetLength", kInterruptible) ? -1 : FileCalls::SetLength(file, length);
}

int FaultyCalls::Reserve(int file, off_t length) {
  return Fails("Reserve", kInterruptible) ? -1 : FileCalls::Reserve(file, length);
}

int FaultyCalls::Sync(int file) {
  return Fails("Sync", kInterruptible) ? -1 : FileCalls::Sync(file);
}

int FaultyCalls::SetMode(int file, mode_t mode) {
  return Fails("SetMode", kInterruptible) ? -1 : FileCalls::SetMode(file, mode);
}

int FaultyCalls::SetOwner(int file, uid_t user, gid_t group) {
  return Fails("SetOwner", kInterruptible) ? -1 : FileCalls::SetOwner(file, user, group);
}

int FaultyCalls::StatusAt(const char* path, struct stat& status) {
  return Fails("StatusAt") ? -1 : FileCalls::StatusAt(path, status);
}

int FaultyCalls::LinkStatusAt(const char* path, struct stat& status) {
  return Fails("LinkStatusAt") ? -1 : FileCalls::LinkStatusAt(path, status);
}

ssize_t FaultyCalls::ReadLink(const char* path, char* buffer, std::size_t size) {
  return Fails("ReadLink") ? -1 : FileCalls::ReadLink(path, buffer, size);
}

int FaultyCalls::Rename(const char* from, const char* to) {
  return Fails("Rename") ? -1 : FileCalls::Rename(from, to);
}

int FaultyCalls::Unlink(const char* path) {
  return Fails("Unlink") ? -1 : FileCalls::Unlink(path);
}

int FaultyCalls::MakeFolder(const char* path, mode_t mode) {
  return Fails("MakeFolder") ? -1 : FileCalls::MakeFolder(path, mode);
}

int FaultyCalls::RemoveFolder(const char* path) {
  return Fails("RemoveFolder") ? -1 : FileCalls::RemoveFolder(path);
}

DIR* FaultyCalls::OpenListing(const char* path) {
  return Fails("OpenListing") ? nullptr : FileCalls::OpenListing(path);
}

int FaultyCalls::NextName(DIR* listing, std::string& name) {
  return Fails("NextName") ? -1 : FileCalls::NextName(listing, name);
}

int FaultyCalls::CloseListing(DIR* listing) {
  const bool fails = Fails("CloseListing");
  const int code = errno;
  const int result = FileCalls::CloseListing(listing);
  if (!fails) return result;
  errno = code;
  return -1;
}

}  // namespace vorquill21::test
