#pragma once

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/platform/desktop.hpp"
#include "vorquill21/platform/files.hpp"
#include "vorquill21/platform/locale.hpp"
#include "vorquill21/platform/process.hpp"
#include "vorquill21/platform/settings.hpp"

namespace vorquill21 {

/// The title of the library: of its message boxes, of its place in the settings store, and at the front of
/// two error sources.
inline constexpr TextView kLibraryTitle = u"Vorquill21";

/// Everything that the library asks of the operating system, handed to each class when it is made. A Platform
/// only refers to its five services and must not outlive them; classes keep a reference to the Platform.
class VORQUILL21_API Platform {
 public:
  Platform(Files& files, Desktop& desktop, Locale& locale, Process& process, Settings& settings)
      : files_(files), desktop_(desktop), locale_(locale), process_(process), settings_(settings) {}
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;

  /// The operating system that the program runs on; lives as long as the program.
  static Platform& Native();

  Files& GetFiles() const noexcept { return files_; }
  Desktop& GetDesktop() const noexcept { return desktop_; }
  Locale& GetLocale() const noexcept { return locale_; }
  Process& GetProcess() const noexcept { return process_; }
  Settings& GetSettings() const noexcept { return settings_; }

  /// The message box that reports an error: exclamation mark, OK, the library's title.
  void ShowError(TextView text) const { desktop_.ShowMessage(text, kExclamation, kLibraryTitle); }

 private:
  Files& files_;
  Desktop& desktop_;
  Locale& locale_;
  Process& process_;
  Settings& settings_;
};

}  // namespace vorquill21
