#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "vorquill21/platform/files.hpp"

namespace vorquill21 {

/// The user's home folder; empty when nobody knows it.
std::string HomeFolder();

/// The folder of the user's configuration files: XDG_CONFIG_HOME, or ".config" in the home folder.
std::string ConfigurationFolder();

/// The folder of this system that an identifier of EOSUtilsSpecialFolders (without the flag) stands for:
///
/// | identifier           | folder                                                                      |
/// |----------------------|-----------------------------------------------------------------------------|
/// | 5 personal           | XDG_DOCUMENTS_DIR, or "Documents" in the home folder                        |
/// | 26 roaming data      | XDG_CONFIG_HOME, or ".config" in the home folder                            |
/// | 28 local data        | XDG_DATA_HOME, or ".local/share" in the home folder                         |
/// | 32 internet cache    | XDG_CACHE_HOME, or ".cache" in the home folder                              |
/// | 35 common data       | the first of XDG_DATA_DIRS, or "/usr/local/share"                           |
/// | 39 pictures          | XDG_PICTURES_DIR, or "Pictures" in the home folder                          |
/// | 46 common documents  | XDG_PUBLICSHARE_DIR, or "Public" in the home folder                         |
///
/// Nothing for every other one. The user's own folders (..._DIR) are looked up in the environment and then in
/// the file "user-dirs.dirs" of the configuration folder. A value that is no full path counts as missing.
std::optional<std::string> SpecialFolderPath(Files& files, std::int32_t identifier);

/// Creates a folder, and before it those that it lies in, as far as they are missing.
void MakeNestedFolders(Files& files, TextView path);

}  // namespace vorquill21
