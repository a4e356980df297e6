#pragma once

#include "output/progress.hpp"
#include "output/terminal.hpp"
#include "program/forwarding_files.hpp"

namespace vorquill21::tool {

/// The name that stands for standard input where a file is read, and for standard output where one is
/// written.
inline constexpr TextView kStandardStream = u"-";

/// The files that the user names: those of the system, and "-". Reading tells how far it has come.
class UserFiles : public ForwardingFiles {
 public:
  UserFiles(Files& inner, Terminal& terminal) : ForwardingFiles(inner), terminal_(terminal) {}

  void ReportTo(Progress* progress) noexcept { progress_ = progress; }

  std::unique_ptr<ByteReader> OpenForReading(TextView path) override;
  void Replace(TextView path, std::string_view bytes) override;

 private:
  Terminal& terminal_;
  Progress* progress_ = nullptr;
};

/// A file system in which one file has been read already: it is found, though it may be hidden or a pipe, and
/// every reading of it gives the same bytes.
class SnapshotFiles : public ForwardingFiles {
 public:
  SnapshotFiles(Files& inner, Text path)
      : ForwardingFiles(inner), path_(std::move(path)), bytes_(ReadWholeFile(inner, path_)) {}
  SnapshotFiles(Files& inner, Text path, std::string bytes)
      : ForwardingFiles(inner), path_(std::move(path)), bytes_(std::move(bytes)) {}

  const std::string& Bytes() const noexcept { return bytes_; }

  std::vector<DirectoryEntry> List(TextView pattern) override;
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override;

 private:
  Text path_;
  std::string bytes_;
};

}  // namespace vorquill21::tool
