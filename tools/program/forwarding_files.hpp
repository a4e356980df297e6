#pragma once

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {

/// A file system that asks another one; what differs is overridden.
class ForwardingFiles : public Files {
 public:
  explicit ForwardingFiles(Files& inner) : inner_(inner) {}

  std::vector<DirectoryEntry> List(TextView pattern) override { return inner_.List(pattern); }
  bool FolderExists(TextView path) override { return inner_.FolderExists(path); }
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override { return inner_.OpenForReading(path); }
  void Replace(TextView path, std::string_view bytes) override { inner_.Replace(path, bytes); }
  void Append(TextView path, std::string_view bytes) override { inner_.Append(path, bytes); }
  void Delete(TextView pattern) override { inner_.Delete(pattern); }
  void MakeFolder(TextView path) override { inner_.MakeFolder(path); }
  void RemoveFolder(TextView path) override { inner_.RemoveFolder(path); }

 protected:
  Files& Inner() const noexcept { return inner_; }

 private:
  Files& inner_;
};

/// A reader that asks another one.
class ForwardingReader : public ByteReader {
 public:
  explicit ForwardingReader(std::unique_ptr<ByteReader> inner) : inner_(std::move(inner)) {}

  std::uint64_t Length() const override { return inner_->Length(); }
  std::size_t Read(std::span<char> buffer) override { return inner_->Read(buffer); }

 private:
  std::unique_ptr<ByteReader> inner_;
};

}  // namespace vorquill21::tool
