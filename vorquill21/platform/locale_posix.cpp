#include "vorquill21/platform/locale_posix.hpp"

#include <langinfo.h>
#include <time.h>

#include <array>
#include <cstring>
#include <string_view>

namespace vorquill21 {
namespace {

/// The part of the user's environment locale that `mask` selects.
locale_t OpenLocale(int mask) {
  const locale_t ofUser = ::newlocale(mask, "", static_cast<locale_t>(nullptr));
  return ofUser != nullptr ? ofUser : ::newlocale(mask, "C", static_cast<locale_t>(nullptr));
}

/// The radix character of the user's numbers; a point when it is no single unit.
char16_t FindDecimalSeparator() {
  const locale_t numbers = OpenLocale(LC_NUMERIC_MASK);
  const Text separator = FromUtf8(::nl_langinfo_l(RADIXCHAR, numbers));
  ::freelocale(numbers);
  const bool isEscapedByte = !separator.empty() && separator.front() >= 0xD800 && separator.front() <= 0xDFFF;
  return separator.size() == 1 && !isEscapedByte ? separator.front() : u'.';
}

void ReplaceAll(std::string& text, std::string_view sought, std::string_view replacement) {
  for (std::size_t at = text.find(sought); at != std::string::npos;
       at = text.find(sought, at + replacement.size())) {
    text.replace(at, sought.size(), replacement);
  }
}

}  // namespace

std::string WithoutSeconds(std::string format, std::string halfDayFormat) {
  if (halfDayFormat.empty()) halfDayFormat = "%I:%M:%S %p";
  ReplaceAll(format, "%r", halfDayFormat);
  ReplaceAll(format, "%T", "%H:%M:%S");
  ReplaceAll(format, "%OS", "%S");
  const std::size_t seconds = format.find("%S");
  if (seconds == std::string::npos) return format;
  const bool afterSeparator = seconds > 0 && std::strchr(":.-", format[seconds - 1]) != nullptr;
  if (afterSeparator) return format.erase(seconds - 1, 3);
  // The unit of the seconds stands behind them, up to the next conversion.
  format.erase(seconds, format.find('%', seconds + 1) - seconds);
  return format.erase(format.find_last_not_of(' ') + 1);
}

PosixLocale::PosixLocale()
    : codePage_(Windows1252Units()),
      timeLocale_(OpenLocale(LC_TIME_MASK)),
      shortTimeFormat_(
          WithoutSeconds(::nl_langinfo_l(T_FMT, timeLocale_), ::nl_langinfo_l(T_FMT_AMPM, timeLocale_))),
      decimalSeparator_(FindDecimalSeparator()) {}

PosixLocale::~PosixLocale() {
  ::freelocale(timeLocale_);
}

Text PosixLocale::Formatted(const char* format) const {
  const time_t now = ::time(nullptr);
  struct tm local {};
  ::localtime_r(&now, &local);
  std::array<char, 256> buffer;
  const std::size_t size = ::strftime_l(buffer.data(), buffer.size(), format, &local, timeLocale_);
  return FromUtf8({buffer.data(), size});
}

Text PosixLocale::ShortTime() const {
  return Formatted(shortTimeFormat_.c_str());
}

Text PosixLocale::ShortDate() const {
  return Formatted("%x");
}

std::size_t PosixLocale::AppendFromCodePage(std::string_view bytes, Text& text) const {
  codePage_.AppendText(bytes, text);
  return bytes.size();
}

void PosixLocale::AppendToCodePage(TextView text, std::string& bytes) const {
  codePage_.AppendBytes(text, bytes);
}

}  // namespace vorquill21
