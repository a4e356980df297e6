#include "tests/support/memory_files.hpp"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::test {
namespace {

constexpr TextView kWildcards = u"*?";

Text Normalised(TextView path) {
  Text normal(path);
  std::ranges::replace(normal, u'\\', u'/');
  while (!normal.empty() && normal.back() == u'/') normal.pop_back();
  return normal;
}

bool HasDrive(const Text& path) {
  return path.size() >= 2 && path[1] == u':';
}

Text ParentOf(const Text& path) {
  const std::size_t slash = path.rfind(u'/');
  return slash == Text::npos ? Text() : path.substr(0, slash);
}

Text NameOf(const Text& path) {
  return path.substr(path.rfind(u'/') + 1);
}

bool MatchesWildcards(TextView name, TextView pattern) {
  if (pattern.empty()) return name.empty();
  if (pattern.front() == u'*') {
    return MatchesWildcards(name, pattern.substr(1)) ||
           (!name.empty() && MatchesWildcards(name.substr(1), pattern));
  }
  if (name.empty()) return false;
  const bool fits = pattern.front() == u'?' || UpperCase(pattern.front()) == UpperCase(name.front());
  return fits && MatchesWildcards(name.substr(1), pattern.substr(1));
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
  const Text sought = Normalised(pattern);
  const Text folder = ParentOf(sought);
  const Text lastPart = NameOf(sought);
  std::vector<DirectoryEntry> entries;
  if (lastPart.empty() || (pattern.back() == u'\\' || pattern.back() == u'/')) return entries;
  const bool hasWildcards = lastPart.find_first_of(kWildcards) != Text::npos;
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
  if (path.empty()) return false;
  const Node* node = Find(Normalised(path));
  return node != nullptr && node->isFolder;
}

std::unique_ptr<ByteReader> MemoryFiles::OpenForReading(TextView path) {
  const Text normal = Normalised(path);
  if (normal.find(u'\0') != Text::npos) throw LibraryError(kBadFileName);
  RequireParent(normal);
  const Node* node = Find(normal);
  if (node == nullptr) throw LibraryError(kFileNotFound);
  if (node->isFolder) throw LibraryError(kPermissionDenied);
  return std::make_unique<Reader>(*this, node->bytes);
}

MemoryFiles::Node& MemoryFiles::FileForWriting(TextView path) {
  const Text normal = Normalised(path);
  if (normal.find(u'\0') != Text::npos) throw LibraryError(kBadFileName);
  RequireParent(normal);
  Node& node = nodes_[normal];
  if (node.isFolder) throw LibraryError(kPermissionDenied);
  return node;
}

void MemoryFiles::Replace(TextView path, std::string_view bytes) {
  FileForWriting(path).bytes = bytes;
}

void MemoryFiles::Append(TextView path, std::string_view bytes) {
  FileForWriting(path).bytes += bytes;
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
  const Text normal = Normalised(path);
  if (normal.empty() || Find(normal) != nullptr) throw LibraryError(kPathFileAccess);
  RequireParent(normal);
  nodes_[normal].isFolder = true;
}

void MemoryFiles::RemoveFolder(TextView path) {
  const Text normal = Normalised(path);
  const Node* node = Find(normal);
  if (node == nullptr || !node->isFolder) throw LibraryError(kPathNotFound);
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
