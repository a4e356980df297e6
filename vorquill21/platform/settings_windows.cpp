#include "vorquill21/platform/settings_windows.hpp"

#include <windows.h>

#include <memory>
#include <optional>
#include <type_traits>

#include "vorquill21/platform/error_windows.hpp"
#include "vorquill21/platform/wide_windows.hpp"

namespace vorquill21 {
namespace {

struct KeyCloser {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using RegistryKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

bool HoldsNul(TextView name) {
  return name.find(u'\0') != TextView::npos;
}

void AppendKeyName(TextView name, std::wstring& path) {
  path += L'\\';
  if (name.empty()) path += L'%';
  for (const char16_t unit : name) {
    if (unit == u'\\') {
      path += L"%5C";
    } else if (unit == u'%') {
      path += L"%25";
    } else {
      path += static_cast<wchar_t>(unit);
    }
  }
}

std::wstring KeyPath(TextView application, TextView section) {
  std::wstring path = L"Software";
  AppendKeyName(application, path);
  AppendKeyName(section, path);
  return path;
}

void Require(LSTATUS error) {
  if (error != ERROR_SUCCESS)
    throw LibraryError(RuntimeErrorOf(static_cast<std::uint32_t>(error), Subject::kFile));
}

/// The text of a value, or nothing when it is missing or of another kind.
std::optional<Text> ReadText(HKEY key, const std::wstring& name) {
  std::wstring wide;
  for (;;) {
    DWORD type = REG_NONE;
    auto bytes = static_cast<DWORD>(wide.size() * sizeof(wchar_t));
    const LSTATUS error =
        RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(wide.data()), &bytes);
    const bool fits = error == ERROR_SUCCESS && bytes <= wide.size() * sizeof(wchar_t);
    if (error != ERROR_SUCCESS && error != ERROR_MORE_DATA) return std::nullopt;
    if (type != REG_SZ) return std::nullopt;
    wide.resize(bytes / sizeof(wchar_t));
    if (fits) break;
  }
  if (wide.ends_with(L'\0')) wide.pop_back();
  return FromWide(wide);
}

}  // namespace

Text WindowsSettings::Get(TextView application, TextView section, TextView key, TextView defaultText) const {
  if (HoldsNul(application) || HoldsNul(section) || HoldsNul(key)) return Text(defaultText);
  const std::wstring path = KeyPath(application, section);
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
    return Text(defaultText);
  }
  const RegistryKey owner(opened);
  return ReadText(opened, ToWide(key)).value_or(Text(defaultText));
}

void WindowsSettings::Set(TextView application, TextView section, TextView key, TextView value) {
  if (HoldsNul(application) || HoldsNul(section) || HoldsNul(key)) throw LibraryError(kInvalidProcedureCall);
  const std::wstring path = KeyPath(application, section);
  HKEY opened = nullptr;
  Require(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE,
                          nullptr, &opened, nullptr));
  const RegistryKey owner(opened);
  const std::wstring wide = ToWide(value);
  const std::size_t bytes = (wide.size() + 1) * sizeof(wchar_t);
  Require(RegSetValueExW(opened, ToWide(key).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(wide.c_str()),
                         static_cast<DWORD>(bytes)));
}

}  // namespace vorquill21
