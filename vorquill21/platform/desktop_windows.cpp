#include "vorquill21/platform/desktop_windows.hpp"

#include <shlobj.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>
#include <type_traits>

#include "vorquill21/platform/com_apartment_windows.hpp"
#include "vorquill21/platform/wide_windows.hpp"

namespace vorquill21 {
namespace {

struct TaskMemoryFree {
  void operator()(void* memory) const { CoTaskMemFree(memory); }
};
using ItemList = std::unique_ptr<std::remove_pointer_t<PIDLIST_ABSOLUTE>, TaskMemoryFree>;

/// What an 8-bit call takes of a text: the part before the first NUL.
std::string Narrow(const Locale& locale, TextView text) {
  return ToCodePage(locale, text.substr(0, text.find(u'\0')));
}

bool IsOfScheme(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' || c == '-' ||
         c == '.';
}

/// Whether an address stands there, "https://...", "mailto:...", and not the path of a file.
bool IsAddress(std::string_view document) {
  constexpr std::size_t kDriveLength = 1;
  const std::size_t schemeLength = document.find(':');
  if (schemeLength == std::string_view::npos || schemeLength <= kDriveLength) return false;
  const std::string_view scheme = document.substr(0, schemeLength);
  return std::all_of(scheme.begin(), scheme.end(), IsOfScheme);
}

/// The shell copies what it opens into buffers of fixed size.
bool IsTooLongForShell(std::string_view document) {
  constexpr std::size_t kGreatestPath = MAX_PATH - 1;
  constexpr std::size_t kGreatestAddress = 2083;
  return document.size() > (IsAddress(document) ? kGreatestAddress : kGreatestPath);
}

bool WindowsCanBeSeen() {
  USEROBJECTFLAGS flags{};
  return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) !=
             0 &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

/// One line on standard error; a run of line ends in the text becomes a blank.
void WriteLine(TextView text, TextView title) {
  std::string line;
  bool inLineEnd = false;
  for (const char byte : ToUtf8(title) + ": " + ToUtf8(text)) {
    const bool isLineEnd = byte == '\r' || byte == '\n';
    if (!isLineEnd) line += byte;
    if (isLineEnd && !inLineEnd) line += ' ';
    inLineEnd = isLineEnd;
  }
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void WindowsDesktop::ShowMessage(TextView text, MessageStyle style, TextView title) {
  const std::wstring wideText = ToWide(text);
  const std::wstring wideTitle = ToWide(title);
  const UINT boxStyle = static_cast<UINT>(style) | MB_TASKMODAL;
  const bool isShown =
      WindowsCanBeSeen() && MessageBoxW(nullptr, wideText.c_str(), wideTitle.c_str(), boxStyle) != 0;
  if (!isShown) WriteLine(text, title);
}

void WindowsDesktop::Beep() {
  MessageBeep(MB_OK);
}

std::int32_t WindowsDesktop::OpenDocument(const DocumentRequest& request) {
  constexpr std::int32_t kNotFound = 2;
  const std::string document = Narrow(locale_, request.document);
  if (IsTooLongForShell(document)) return kNotFound;
  const ComApartment apartment;
  const HWND owner = request.ownedByDesktop ? GetDesktopWindow() : nullptr;
  const HINSTANCE result = ShellExecuteA(owner, Narrow(locale_, request.verb).c_str(), document.c_str(),
                                         Narrow(locale_, request.parameters).c_str(),
                                         Narrow(locale_, request.folder).c_str(), request.showMode);
  return static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(result));
}

std::optional<Text> WindowsDesktop::BrowseForFolder(std::int32_t ownerWindow, TextView title) {
  constexpr UINT kFileSystemFoldersBelowDomains = BIF_RETURNONLYFSDIRS | BIF_DONTGOBELOWDOMAIN;
  if (!WindowsCanBeSeen()) return std::nullopt;
  const ComApartment apartment;
  std::string narrowTitle = Narrow(locale_, title);
  char displayName[MAX_PATH] = {};
  BROWSEINFOA request{};
  request.hwndOwner = reinterpret_cast<HWND>(static_cast<INT_PTR>(ownerWindow));
  request.pszDisplayName = displayName;
  request.lpszTitle = lstrcatA(narrowTitle.data(), "");
  request.ulFlags = kFileSystemFoldersBelowDomains;
  const ItemList picked(SHBrowseForFolderA(&request));
  if (!picked) return std::nullopt;
  wchar_t path[MAX_PATH] = {};
  SHGetPathFromIDListW(picked.get(), path);
  return FromWide(path);
}

std::int32_t WindowsDesktop::SpecialFolder(std::int32_t identifier, Text& path) {
  char buffer[MAX_PATH] = {};
  const HRESULT result = SHGetFolderPathA(nullptr, identifier, nullptr, SHGFP_TYPE_CURRENT, buffer);
  if (result == S_OK) path = FromCodePage(locale_, buffer);
  return static_cast<std::int32_t>(result);
}

}  // namespace vorquill21
