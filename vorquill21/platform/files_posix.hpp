#pragma once

#include "vorquill21/platform/file_calls_posix.hpp"
#include "vorquill21/platform/files.hpp"

namespace vorquill21 {

/// The files of a POSIX system. "\" and "/" both separate folders; a path that begins with a drive names
/// nothing that exists.
///
/// Replace keeps mode, and owner and group where the process may set them; further attributes stay with the
/// old file, and set-user bits where the system takes them off a file that is written to. The new content and
/// its name are on the disk when it returns. Written in place are devices, files of several names, and files
/// whose folder takes no new file or lets the old one not be replaced. There the promise is smaller: the old
/// content is whole after an error that comes before the first byte is written, a full disk among them where
/// the file system can reserve room; when writing itself fails on the way, the file has its old length and
/// begins with a part of the new content.
///
/// An Append that fails leaves the file with the length that it had, and a file that was missing stays
/// missing; only when closing an existing file is what fails, the bytes may be there.
class PosixFiles : public Files {
 public:
  explicit PosixFiles(FileCalls& calls) : calls_(calls) {}

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
