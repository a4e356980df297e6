#include "vorquill21/platform/path_posix.hpp"

#include <algorithm>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {

bool NamesDrive(TextView path) noexcept {
  if (path.size() < 2 || path[1] != u':') return false;
  const char16_t letter = UpperCase(path[0]);
  return letter >= u'A' && letter <= u'Z';
}

std::string SystemPath(TextView path) {
  std::string systemPath = ToUtf8(path);
  if (systemPath.find('\0') != std::string::npos) throw LibraryError(kBadFileName);
  if (NamesDrive(path)) throw LibraryError(kPathNotFound);
  char* const begin = systemPath.data();
  std::transform(begin, begin + systemPath.size(), begin, [](char c) { return c == '\\' ? '/' : c; });
  return systemPath;
}

std::string FolderOf(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  return separator == std::string::npos ? "./" : path.substr(0, separator + 1);
}

std::string NameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace vorquill21
