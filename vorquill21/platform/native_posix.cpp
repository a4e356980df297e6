#include "vorquill21/platform/desktop_posix.hpp"
#include "vorquill21/platform/files_posix.hpp"
#include "vorquill21/platform/locale_posix.hpp"
#include "vorquill21/platform/platform.hpp"
#include "vorquill21/platform/process_posix.hpp"
#include "vorquill21/platform/settings_posix.hpp"

namespace vorquill21 {

Platform& Platform::Native() {
  struct Services {
    FileCalls fileCalls;
    PosixFiles files{fileCalls};
    PosixDesktop desktop{files, fileCalls};
    PosixLocale locale;
    PosixProcess process{files};
    PosixSettings settings{files};
    Platform platform{files, desktop, locale, process, settings};
  };
  static Services services;
  return services.platform;
}

}  // namespace vorquill21
