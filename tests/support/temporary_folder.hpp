#pragma once

#include <filesystem>
#include <random>
#include <string>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21::test {

/// A fresh, empty folder of the real system, removed with all it holds at the end.
class TemporaryFolder {
 public:
  TemporaryFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("vorquill21-test-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directory(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }

  /// The path of a name below the folder, with "\" before it.
  Text Below(TextView name) const { return path_.u16string().append(u"\\").append(name); }

 private:
  std::filesystem::path path_;
};

}  // namespace vorquill21::test
