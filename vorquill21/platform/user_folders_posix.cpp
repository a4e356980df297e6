#include "vorquill21/platform/user_folders_posix.hpp"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

enum SpecialFolderIdentifier : std::int32_t {
  kPersonal = 5,
  kRoamingData = 26,
  kLocalData = 28,
  kInternetCache = 32,
  kCommonData = 35,
  kPictures = 39,
  kCommonDocuments = 46,
};

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

bool IsFullPath(std::string_view path) {
  return path.starts_with('/');
}

std::string WithoutFinalSeparators(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string HomeInUserDatabase() {
  constexpr std::size_t kRoom = 16384;
  std::vector<char> buffer(kRoom);
  struct passwd entry {};
  struct passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found == nullptr ? std::string() : found->pw_dir;
}

std::string BaseFolder(const char* variable, std::string_view belowHome) {
  const std::string value = Variable(variable);
  return WithoutFinalSeparators(IsFullPath(value) ? value : HomeFolder().append("/").append(belowHome));
}

std::string FirstDataFolder() {
  const std::string folders = Variable("XDG_DATA_DIRS");
  const std::string first = folders.substr(0, folders.find(':'));
  return WithoutFinalSeparators(IsFullPath(first) ? first : "/usr/local/share");
}

/// The value between double quotes of a line `NAME="value"`; "\" protects the character behind it.
std::string QuotedValue(std::string_view line) {
  std::string value;
  const std::size_t open = line.find('"');
  if (open == std::string_view::npos) return value;
  for (std::size_t i = open + 1; i < line.size() && line[i] != '"'; ++i) {
    if (line[i] == '\\' && i + 1 < line.size()) ++i;
    value += line[i];
  }
  return value;
}

std::string ReadOrEmpty(Files& files, const std::string& path) {
  try {
    return ReadWholeFile(files, FromUtf8(path));
  } catch (const LibraryError&) {
    return {};
  }
}

/// The user's choice for a folder in "user-dirs.dirs"; empty when there is none.
std::string ChosenUserFolder(Files& files, std::string_view variable) {
  constexpr std::string_view kHome = "$HOME";
  const std::string content = ReadOrEmpty(files, ConfigurationFolder() + "/user-dirs.dirs");
  std::string chosen;
  for (std::string_view rest = content; !rest.empty();) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!line.starts_with(variable) || !line.substr(variable.size()).starts_with('=')) continue;
    const std::string value = QuotedValue(line);
    chosen = value.starts_with(kHome) ? HomeFolder() + value.substr(kHome.size()) : value;
  }
  return chosen;
}

std::string UserFolder(Files& files, const char* variable, std::string_view belowHome) {
  std::string folder = Variable(variable);
  if (!IsFullPath(folder)) folder = ChosenUserFolder(files, variable);
  if (!IsFullPath(folder)) folder = HomeFolder().append("/").append(belowHome);
  return WithoutFinalSeparators(folder);
}

void MakeFolderIfMissing(Files& files, TextView path) {
  if (files.FolderExists(path)) return;
  try {
    files.MakeFolder(path);
  } catch (const LibraryError&) {
    if (!files.FolderExists(path)) throw;  // made by somebody else meanwhile
  }
}

}  // namespace

std::string HomeFolder() {
  const std::string home = Variable("HOME");
  return WithoutFinalSeparators(IsFullPath(home) ? home : HomeInUserDatabase());
}

std::string ConfigurationFolder() {
  return BaseFolder("XDG_CONFIG_HOME", ".config");
}

std::optional<std::string> SpecialFolderPath(Files& files, std::int32_t identifier) {
  switch (identifier) {
    case kPersonal:
      return UserFolder(files, "XDG_DOCUMENTS_DIR", "Documents");
    case kRoamingData:
      return ConfigurationFolder();
    case kLocalData:
      return BaseFolder("XDG_DATA_HOME", ".local/share");
    case kInternetCache:
      return BaseFolder("XDG_CACHE_HOME", ".cache");
    case kCommonData:
      return FirstDataFolder();
    case kPictures:
      return UserFolder(files, "XDG_PICTURES_DIR", "Pictures");
    case kCommonDocuments:
      return UserFolder(files, "XDG_PUBLICSHARE_DIR", "Public");
    default:
      return std::nullopt;
  }
}

void MakeNestedFolders(Files& files, TextView path) {
  for (std::size_t end = path.find(u'/', 1);; end = path.find(u'/', end + 1)) {
    MakeFolderIfMissing(files, path.substr(0, end));
    if (end == TextView::npos) return;
  }
}

}  // namespace vorquill21
