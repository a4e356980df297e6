#pragma once

#include <memory>

#include "vorquill21/platform/code_page_windows.hpp"
#include "vorquill21/platform/locale.hpp"

namespace vorquill21 {

/// The settings of the user, asked for anew with every call, and a code page of the system.
class WindowsLocale : public Locale {
 public:
  explicit WindowsLocale(unsigned codePage = SystemCodePage::CurrentNumber());

  char16_t DecimalSeparator() const override;
  Text ShortTime() const override;
  Text ShortDate() const override;
  bool HasSingleBytes() const override;
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override;
  void AppendToCodePage(TextView text, std::string& bytes) const override;

 private:
  std::unique_ptr<SystemCodePage> page_;
};

}  // namespace vorquill21
