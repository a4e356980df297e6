#include "vorquill21/platform/locale_windows.hpp"

#include <windows.h>

#include <string>

#include "vorquill21/platform/wide_windows.hpp"

namespace vorquill21 {
namespace {

/// The text of a call that first tells the room it needs, its NUL included: `call(buffer, room)`.
template <typename Call>
Text TextOfCall(Call call) {
  std::wstring wide(static_cast<std::size_t>(call(nullptr, 0)), L'\0');
  const int length = call(wide.data(), static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(length > 0 ? length - 1 : 0));
  return FromWide(wide);
}

}  // namespace

WindowsLocale::WindowsLocale(unsigned codePage) : page_(SystemCodePage::Make(codePage)) {}

char16_t WindowsLocale::DecimalSeparator() const {
  constexpr int kLongestSeparator = 4;
  wchar_t separator[kLongestSeparator];
  const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator, kLongestSeparator);
  return length > 1 ? static_cast<char16_t>(separator[0]) : u'.';
}

Text WindowsLocale::ShortTime() const {
  return TextOfCall([](wchar_t* buffer, int room) {
    return GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, nullptr, nullptr, buffer, room);
  });
}

Text WindowsLocale::ShortDate() const {
  return TextOfCall([](wchar_t* buffer, int room) {
    return GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, buffer, room);
  });
}

bool WindowsLocale::HasSingleBytes() const {
  return page_->HasSingleBytes();
}

std::size_t WindowsLocale::AppendFromCodePage(std::string_view bytes, Text& text) const {
  return page_->AppendText(bytes, text);
}

void WindowsLocale::AppendToCodePage(TextView text, std::string& bytes) const {
  page_->AppendBytes(text, bytes);
}

}  // namespace vorquill21
