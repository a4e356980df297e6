#pragma once

#include <locale.h>

#include <string>

#include "vorquill21/platform/code_page.hpp"
#include "vorquill21/platform/locale.hpp"

namespace vorquill21 {

/// A format of hours and minutes made of a format of hours, minutes and seconds (both as strftime takes
/// them): what writes the seconds is left out. `halfDayFormat` is what "%r" stands for.
std::string WithoutSeconds(std::string format, std::string halfDayFormat);

/// The settings of the user's environment (LC_ALL, LC_NUMERIC, LC_TIME, LANG) as they are when the object is
/// made; those of the "C" locale where the system does not have the one named there. The locale of the
/// process is neither used nor changed. The code page is Windows-1252.
class PosixLocale : public Locale {
 public:
  PosixLocale();
  PosixLocale(const PosixLocale&) = delete;
  PosixLocale& operator=(const PosixLocale&) = delete;
  ~PosixLocale() override;

  char16_t DecimalSeparator() const override { return decimalSeparator_; }
  Text ShortTime() const override;
  Text ShortDate() const override;
  bool HasSingleBytes() const override { return true; }
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override;
  void AppendToCodePage(TextView text, std::string& bytes) const override;

 private:
  Text Formatted(const char* format) const;

  CodePage codePage_;
  locale_t timeLocale_;
  std::string shortTimeFormat_;
  char16_t decimalSeparator_;
};

}  // namespace vorquill21
