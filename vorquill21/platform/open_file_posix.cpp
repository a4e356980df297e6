#include "vorquill21/platform/open_file_posix.hpp"

#include <fcntl.h>

#include <algorithm>
#include <utility>

namespace vorquill21 {
OpenFile::OpenFile(OpenFile&& other) noexcept
    : calls_(other.calls_), descriptor_(std::exchange(other.descriptor_, -1)) {}

bool OpenFile::Open(const std::string& path, int flags, mode_t mode) {
  descriptor_ = Uninterrupted([&] { return calls_.Open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); });
  return IsOpen();
}

struct stat OpenFile::Status() const {
  struct stat status {};
  RequireDone(calls_.Status(descriptor_, status));
  return status;
}

void OpenFile::WriteAll(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t count = WriteOnce(bytes);
    if (count == 0) throw LibraryError(kDeviceInputOutput);
    bytes.remove_prefix(count);
  }
}

std::size_t OpenFile::WriteOnce(std::string_view bytes) {
  const std::size_t size = std::min(bytes.size(), kLargestWrite);
  const ssize_t count = Uninterrupted([&] { return calls_.Write(descriptor_, bytes.data(), size); });
  RequireDone(count);
  return static_cast<std::size_t>(count);
}

void OpenFile::Sync() {
  RequireDone(Uninterrupted([&] { return calls_.Sync(descriptor_); }));
}

void OpenFile::SetLength(off_t length) {
  RequireDone(Uninterrupted([&] { return calls_.SetLength(descriptor_, length); }));
}

void OpenFile::Close() {
  // An interrupted close has closed the file all the same, and must not be repeated.
  const int result = calls_.Close(std::exchange(descriptor_, -1));
  if (result == -1 && !LastCallWasInterrupted()) throw LibraryError(LastError(Subject::kFile));
}

void OpenFile::Discard() noexcept {
  if (IsOpen()) calls_.Close(std::exchange(descriptor_, -1));
}

}  // namespace vorquill21
