#pragma once

#include <map>
#include <string>

#include "vorquill21/platform/files.hpp"

namespace vorquill21::test {

/// A file system in memory that keeps the promises of Files. It has one root, where every path begins; "/"
/// and
/// "\" both separate folders, plain names match exactly, and a path that begins with a drive letter names a
/// missing drive. Names that begin with "." are hidden.
class MemoryFiles : public Files {
 public:
  std::vector<DirectoryEntry> List(TextView pattern) override;
  bool FolderExists(TextView path) override;
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override;
  void Replace(TextView path, std::string_view bytes) override;
  void Append(TextView path, std::string_view bytes) override;
  void Delete(TextView pattern) override;
  void MakeFolder(TextView path) override;
  void RemoveFolder(TextView path) override;

  /// Content of the file at `path`, straight from memory; the test fails (by an exception) when it is
  /// missing.
  std::string& Content(TextView path);
  bool FileIsThere(TextView path) const;

  /// Number of readers that were opened and not destroyed yet.
  int OpenReaders() const noexcept { return openReaders_; }

 private:
  class Reader;
  struct Node {
    bool isFolder = false;
    std::string bytes;
  };

  Node* Find(const Text& path);
  void RequireParent(const Text& path);
  Text PathOfFile(TextView path);

  // Paths with "/" as separator, without a final one; the root is the empty path.
  std::map<Text, Node> nodes_{{Text(), Node{true, {}}}};
  int openReaders_ = 0;
};

}  // namespace vorquill21::test
