#include "program/user_files.hpp"

#include <algorithm>
#include <cstdio>

namespace vorquill21::tool {
namespace {

class StandardInput : public ByteReader {
 public:
  std::uint64_t Length() const override { return 0; }

  std::size_t Read(std::span<char> buffer) override {
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stdin);
    if (count == 0 && std::ferror(stdin) != 0) throw LibraryError(kDeviceInputOutput);
    return count;
  }
};

class ReportingReader : public ForwardingReader {
 public:
  ReportingReader(std::unique_ptr<ByteReader> inner, Progress& progress)
      : ForwardingReader(std::move(inner)), progress_(progress) {
    progress_.Begin(Length());
  }

  std::size_t Read(std::span<char> buffer) override {
    const std::size_t count = ForwardingReader::Read(buffer);
    progress_.Advance(count);
    return count;
  }

 private:
  Progress& progress_;
};

class MemoryReader : public ByteReader {
 public:
  explicit MemoryReader(std::string_view bytes) : bytes_(bytes), length_(bytes.size()) {}

  std::uint64_t Length() const override { return length_; }

  std::size_t Read(std::span<char> buffer) override {
    const std::size_t count = std::min(buffer.size(), bytes_.size());
    std::copy_n(bytes_.begin(), count, buffer.begin());
    bytes_.remove_prefix(count);
    return count;
  }

 private:
  std::string_view bytes_;
  std::uint64_t length_;
};

}  // namespace

std::unique_ptr<ByteReader> UserFiles::OpenForReading(TextView path) {
  auto reader = path == kStandardStream ? std::make_unique<StandardInput>() : Inner().OpenForReading(path);
  if (progress_ == nullptr) return reader;
  return std::make_unique<ReportingReader>(std::move(reader), *progress_);
}

void UserFiles::Replace(TextView path, std::string_view bytes) {
  if (path != kStandardStream) return Inner().Replace(path, bytes);
  if (progress_ != nullptr) progress_->Stop();
  terminal_.Write(bytes);
}

std::vector<DirectoryEntry> SnapshotFiles::List(TextView pattern) {
  if (pattern != path_) return Inner().List(pattern);
  return {DirectoryEntry{.name = path_}};
}

std::unique_ptr<ByteReader> SnapshotFiles::OpenForReading(TextView path) {
  if (path != path_) return Inner().OpenForReading(path);
  return std::make_unique<MemoryReader>(bytes_);
}

}  // namespace vorquill21::tool
