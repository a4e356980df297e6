#pragma once

#include <map>
#include <string>

#include "vorquill21/platform/file_calls_posix.hpp"

namespace vorquill21::test {

/// The real system calls, one of which meets a fault.
class FaultyCalls : public FileCalls {
 public:
  enum Fault {
    kNone,
    kFailure,       ///< the call does nothing and fails with the code (a close closes all the same)
    kInterruption,  ///< the same with EINTR; counts only calls that signals interrupt
    kShortCount,    ///< half of the bytes are read or written; counts only reads and writes of several bytes
  };

  FaultyCalls() = default;
  FaultyCalls(Fault fault, int at, int code) : fault_(fault), countdown_(at), code_(code) {}

  /// The call that met the fault with the number of its occurrence, such as "Write 1"; empty before that.
  const std::string& Met() const { return met_; }

  int Open(const char* path, int flags, mode_t mode) override;
  int Close(int file) override;
  int Status(int file, struct stat& status) override;
  ssize_t Read(int file, char* buffer, std::size_t size) override;
  ssize_t Write(int file, const char* bytes, std::size_t size) override;
  off_t Position(int file) override;
  off_t Move(int file, off_t distance) override;
  int SetLength(int file, off_t length) override;
  int Reserve(int file, off_t length) override;
  int Sync(int file) override;
  int SetMode(int file, mode_t mode) override;
  int SetOwner(int file, uid_t user, gid_t group) override;
  int StatusAt(const char* path, struct stat& status) override;
  int LinkStatusAt(const char* path, struct stat& status) override;
  ssize_t ReadLink(const char* path, char* buffer, std::size_t size) override;
  int Rename(const char* from, const char* to) override;
  int Unlink(const char* path) override;
  int MakeFolder(const char* path, mode_t mode) override;
  int RemoveFolder(const char* path) override;
  DIR* OpenListing(const char* path) override;
  int NextName(DIR* listing, std::string& name) override;
  int CloseListing(DIR* listing) override;

 private:
  enum Kind { kPlain, kInterruptible };
  bool Fails(const char* name, Kind kind = kPlain);
  std::size_t Shortened(const char* name, std::size_t size);
  bool CountsDown(const char* name);

  Fault fault_ = kNone;
  int countdown_ = 0;
  int code_ = 0;
  std::map<std::string, int> occurrences_;
  std::string met_;
};

}  // namespace vorquill21::test
