#include "tests/support/memory_files.hpp"

#include <algorithm>
#include <stdexcept>

#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/platform/wildcard.hpp"

namespace vorquill21::test {
namespace {

bool HasDrive(TextView path) {
  if (path.size() < 2 || path[1] != u':') return false;
  const char16_t letter = UpperCase(path[0]);
  return letter >= u'A' && letter <= u'Z';
}

bool EndsInSeparator(TextView path) {
  return path.ends_with(u'\\') || path.ends_with(u'/');
}

void RefuseNul(TextView path) {
  if (path.find(u'\0') != TextView::npos) throw LibraryError(kBadFileName);
}

/// One "/" before each part of the path, which begins at the root; a drive stays at the front.
Text Normalised(TextView path) {
  Text normal;
  bool atSeparator = !HasDrive(path);
  for (const char16_t unit : path) {
    const bool isSeparator = unit == u'\\' || unit == u'/';
    if (!isSeparator && atSeparator) normal += u'/';
    if (!isSeparator) normal += unit;
    atSeparator = isSeparator;
  }
  return normal;
}

Text ParentOf(const Text& path) {
  const std::size_t slash = path.rfind(u'/');
  return slash == Text::npos ? Text() : path.substr(0, slash);
}

Text NameOf(const Text& path) {
  return path.substr(path.rfind(u'/') + 1);
}

}  // namespace

class MemoryFiles::Reader : public ByteReader {
 public:
  Reader(MemoryFiles& files, std::string bytes) : files_(files), bytes_(std::move(bytes)) {
    ++files_.openReaders_;
  }
  ~Reader() override { --files_.openReaders_; }

  std::uint64_t Length() const override { return bytes_.size(); }

  std::size_t Read(std::span<char> buffer) override {
    const std::size_t count = std::min(buffer.size(), bytes_.size() - at_);
    std::copy_n(bytes_.data() + at_, count, buffer.data());
    at_ += count;
    return count;
  }

 private:
  MemoryFiles& files_;
  std::string bytes_;
  std::size_t at_ = 0;
};

MemoryFiles::Node* MemoryFiles::Find(const Text& path) {
  const auto found = nodes_.find(path);
  return found == nodes_.end() ? nullptr : &found->second;
}

void MemoryFiles::RequireParent(const Text& path) {
  const Node* parent = HasDrive(path) ? nullptr : Find(ParentOf(path));
  if (parent == nullptr || !parent->isFolder) throw LibraryError(kPathNotFound);
}

std::vector<DirectoryEntry> MemoryFiles::List(TextView pattern) {
  RefuseNul(pattern);
  std::vector<DirectoryEntry> entries;
  if (pattern.empty() || EndsInSeparator(pattern) || HasDrive(pattern)) return entries;
  const Text sought = Normalised(pattern);
  const Text folder = ParentOf(sought);
  const Text lastPart = NameOf(sought);
  const bool hasWildcards = HasWildcards(lastPart);
  for (const auto& [path, node] : nodes_) {
    const Text name = NameOf(path);
    if (path.empty() || ParentOf(path) != folder) continue;
    if (hasWildcards ? !MatchesWildcards(name, lastPart) : name != lastPart) continue;
    entries.push_back({name, node.isFolder, name.front() == u'.', false});
  }
  std::ranges::stable_sort(entries, {}, [](const DirectoryEntry& entry) { return UpperCase(entry.name); });
  return entries;
}

bool MemoryFiles::FolderExists(TextView path) {
  if (path.empty() || HasDrive(path)) return false;
  const Node* node = Find(Normalised(path));
  return node != nullptr && node->isFolder;
}

Text MemoryFiles::PathOfFile(TextView path) {
  RefuseNul(path);
  if (path.empty()) throw LibraryError(kBadFileName);
  const Text normal = Normalised(path);
  if (FolderExists(path)) throw LibraryError(kPermissionDenied);
  if (EndsInSeparator(path)) throw LibraryError(kPathNotFound);
  RequireParent(normal);
  return normal;
}

std::unique_ptr<ByteReader> MemoryFiles::OpenForReading(TextView path) {
  const Node* node = Find(PathOfFile(path));
  if (node == nullptr) throw LibraryError(kFileNotFound);
  return std::make_unique<Reader>(*this, node->bytes);
}

void MemoryFiles::Replace(TextView path, std::string_view bytes) {
  nodes_[PathOfFile(path)].bytes = bytes;
}

void MemoryFiles::Append(TextView path, std::string_view bytes) {
  nodes_[PathOfFile(path)].bytes += bytes;
}

void MemoryFiles::Delete(TextView pattern) {
  const Text folder = ParentOf(Normalised(pattern));
  bool found = false;
  for (const DirectoryEntry& entry : List(pattern)) {
    if (!entry.IsOrdinaryFile()) continue;
    nodes_.erase(folder + u'/' + entry.name);
    found = true;
  }
  if (!found) throw LibraryError(kFileNotFound);
}

void MemoryFiles::MakeFolder(TextView path) {
  RefuseNul(path);
  const Text normal = Normalised(path);
  if (normal.empty() || Find(normal) != nullptr) throw LibraryError(kPathFileAccess);
  RequireParent(normal);
  nodes_[normal].isFolder = true;
}

void MemoryFiles::RemoveFolder(TextView path) {
  RefuseNul(path);
  if (!FolderExists(path)) throw LibraryError(kPathNotFound);
  const Text normal = Normalised(path);
  const bool hasContent =
      std::ranges::any_of(nodes_, [&](const auto& entry) { return ParentOf(entry.first) == normal; });
  if (normal.empty() || hasContent) throw LibraryError(kPathFileAccess);
  nodes_.erase(normal);
}

std::string& MemoryFiles::Content(TextView path) {
  Node* node = Find(Normalised(path));
  if (node == nullptr || node->isFolder) throw std::out_of_range("no such file: " + ToUtf8(path));
  return node->bytes;
}

bool MemoryFiles::FileIsThere(TextView path) const {
  const auto found = nodes_.find(Normalised(path));
  return found != nodes_.end() && !found->second.isFolder;
}

}  // namespace vorquill21::test
