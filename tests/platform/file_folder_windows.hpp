#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/temporary_folder.hpp"

namespace vorquill21::test {

/// A temporary folder whose files the test itself writes and reads, without the code under test.
class FileFolder : public TemporaryFolder {
 public:
  std::wstring WideBelow(TextView name) const { return (Path() / name).wstring(); }

  void Write(TextView name, std::string_view bytes) const {
    std::ofstream(Path() / name, std::ios::binary) << bytes;
  }

  /// Nothing for a missing file.
  std::string Bytes(TextView name) const {
    std::ifstream file(Path() / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  /// Names of everything in the folder, in order.
  std::vector<Text> Names() const {
    std::vector<Text> names;
    for (const auto& entry : std::filesystem::directory_iterator(Path())) {
      names.push_back(entry.path().filename().u16string());
    }
    std::ranges::sort(names);
    return names;
  }
};

}  // namespace vorquill21::test
