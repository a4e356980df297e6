#pragma once

#include "vorquill21/platform/file_calls_windows.hpp"
#include "vorquill21/platform/files.hpp"

namespace vorquill21 {

/// The files of Windows. "\" and "/" both separate folders.
///
/// Replace keeps the attributes and the permissions of the file. It writes in place what is no file on a
/// disk, what has several names, what others hold open so that it cannot be renamed over, and what lies in a
/// folder that takes no new files: room is then reserved before the old content is touched, so that a full
/// disk leaves it whole.
///
/// An Append that fails leaves the file with the length that it had, and a file that was missing stays
/// missing; only when closing an existing file is what fails, the bytes may be there.
class WindowsFiles : public Files {
 public:
  explicit WindowsFiles(FileCalls& calls) : calls_(calls) {}

  std::vector<DirectoryEntry> List(TextView pattern) override;
  bool FolderExists(TextView path) override;
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override;
  void Replace(TextView path, std::string_view bytes) override;
  void Append(TextView path, std::string_view bytes) override;
  void Delete(TextView pattern) override;
  void MakeFolder(TextView path) override;
  void RemoveFolder(TextView path) override;

 private:
  FileCalls& calls_;
};

}  // namespace vorquill21
