#pragma once

#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace vorquill21::test {

/// A disk of `room` bytes, mounted on a folder.
class SmallDisk {
 public:
  SmallDisk(std::string folder, std::size_t room) : folder_(std::move(folder)) {
    const std::string options = "size=" + std::to_string(room);
    mounted_ = ::mount("tmpfs", folder_.c_str(), "tmpfs", 0, options.c_str()) == 0;
    if (!mounted_) reason_ = std::strerror(errno);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (mounted_) ::umount(folder_.c_str());
  }

  bool IsMounted() const { return mounted_; }
  const std::string& Reason() const { return reason_; }

 private:
  std::string folder_;
  bool mounted_ = false;
  std::string reason_;
};

}  // namespace vorquill21::test
