#pragma once

#include "vorquill21/platform/desktop.hpp"
#include "vorquill21/platform/locale.hpp"

namespace vorquill21 {

/// The desktop of Windows. What its 8-bit calls take and give goes through the code page of `locale`. A
/// process whose windows nobody can see, such as a service, has no display.
class WindowsDesktop : public Desktop {
 public:
  explicit WindowsDesktop(const Locale& locale) : locale_(locale) {}

  void ShowMessage(TextView text, MessageStyle style, TextView title) override;
  void Beep() override;

  /// A path of more than 259 bytes, or an address of more than 2083, is not handed to the shell, which has no
  /// room for it: file not found.
  std::int32_t OpenDocument(const DocumentRequest& request) override;
  std::optional<Text> BrowseForFolder(std::int32_t ownerWindow, TextView title) override;
  std::int32_t SpecialFolder(std::int32_t identifier, Text& path) override;

 private:
  const Locale& locale_;
};

}  // namespace vorquill21
