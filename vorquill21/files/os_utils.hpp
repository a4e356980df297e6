#pragma once

#include <cstdint>

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {

/// Special folders of the system and the user.
enum EOSUtilsSpecialFolders : std::int32_t {
  eSpecialFolder_PERSONAL = 5,         ///< the user's documents
  eSpecialFolder_APPDATA = 26,         ///< the user's application data, on every machine
  eSpecialFolder_LOCAL_APPDATA = 28,   ///< the user's application data, on this machine
  eSpecialFolder_INTERNET_CACHE = 32,  ///< what was loaded and may be loaded again
  eSpecialFolder_COOKIES = 33,
  eSpecialFolder_HISTORY = 34,
  eSpecialFolder_COMMON_APPDATA = 35,  ///< application data of all users
  eSpecialFolder_WINDOWS = 36,
  eSpecialFolder_SYSTEM = 37,
  eSpecialFolder_PROGRAM_FILES = 38,
  eSpecialFolder_MYPICTURES = 39,  ///< the user's pictures
  eSpecialFolder_PROGRAM_FILES_COMMON = 43,
  eSpecialFolder_COMMON_DOCUMENTS = 46,  ///< documents of all users
  eSpecialFolder_COMMON_ADMINTOOLS = 47,
  eSpecialFolder_ADMINTOOLS = 48,

  eSpecialFolder_FLAG_CREATE = 32768,  ///< added to another one: the folder is made when it is missing
};

/// What the operating system knows. An object holds no state but its platform.
class VORQUILL21_API COSUtils {
 public:
  explicit COSUtils(Platform& platform = Platform::Native());

  /// Finds a special folder: an EOSUtilsSpecialFolders, with eSpecialFolder_FLAG_CREATE added to have it made
  /// when it is missing. True with its path, without a final separator, in `asPath`.
  ///
  /// Otherwise False, and `asPath` receives not a path but the reason: "Folder Does Not Exist" when the
  /// system knows the folder but it is missing, "Folder Not Valid on this OS" for whatever else went wrong.
  /// Look at the result first. Raises nothing: when memory for the reason runs out, `asPath` is empty.
  ///
  /// Windows knows all of these folders. A POSIX system knows those that the descriptions above tell of; for
  /// example PERSONAL is XDG_DOCUMENTS_DIR or "Documents" in the home folder, APPDATA is XDG_CONFIG_HOME or
  /// ".config", LOCAL_APPDATA is XDG_DATA_HOME or ".local/share".
  bool GetSpecialFolderPath(std::int32_t anCLSID, Text& asPath) const;

 private:
  Platform& platform_;
};

}  // namespace vorquill21
