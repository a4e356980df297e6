#pragma once

#include <string>
#include <string_view>

#include "vorquill21/platform/error_posix.hpp"
#include "vorquill21/platform/file_calls_posix.hpp"

namespace vorquill21 {

/// Raises the runtime error of the last system call when its `result` says that it failed.
template <typename Result>
void RequireDone(Result result, Subject subject = Subject::kFile) {
  if (result == -1) throw LibraryError(LastError(subject));
}

/// An open file or folder; closed by its destructor when nobody closed it before.
class OpenFile {
 public:
  /// The most that the system writes at once.
  static constexpr std::size_t kLargestWrite = 0x7FFFF000;

  explicit OpenFile(FileCalls& calls) : calls_(calls) {}
  OpenFile(OpenFile&& other) noexcept;
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { Discard(); }

  /// Opens a path, never to be inherited by a program that the process starts; false, with the reason in
  /// LastError, when that failed.
  bool Open(const std::string& path, int flags, mode_t mode = 0);
  bool IsOpen() const noexcept { return descriptor_ != -1; }
  int Descriptor() const noexcept { return descriptor_; }

  struct stat Status() const;

  /// Writes all of `bytes`, with as many calls as it takes.
  void WriteAll(std::string_view bytes);

  /// Writes with one call and returns how many bytes went out, kLargestWrite at most.
  std::size_t WriteOnce(std::string_view bytes);

  /// Waits until everything written has reached the disk.
  void Sync();

  void SetLength(off_t length);

  /// Closes the file, whatever the outcome; an error on closing is raised.
  void Close();

 private:
  void Discard() noexcept;

  FileCalls& calls_;
  int descriptor_ = -1;
};

}  // namespace vorquill21
