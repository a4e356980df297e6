#include "vorquill21/platform/desktop_windows.hpp"
#include "vorquill21/platform/files_windows.hpp"
#include "vorquill21/platform/locale_windows.hpp"
#include "vorquill21/platform/platform.hpp"
#include "vorquill21/platform/process_windows.hpp"
#include "vorquill21/platform/settings_windows.hpp"

namespace vorquill21 {

Platform& Platform::Native() {
  struct Services {
    FileCalls fileCalls;
    WindowsFiles files{fileCalls};
    WindowsLocale locale;
    WindowsDesktop desktop{locale};
    WindowsProcess process;
    WindowsSettings settings;
    Platform platform{files, desktop, locale, process, settings};
  };
  static Services services;
  return services.platform;
}

}  // namespace vorquill21
