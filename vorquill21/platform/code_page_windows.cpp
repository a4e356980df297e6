#include "vorquill21/platform/code_page_windows.hpp"

#include <windows.h>

#include <algorithm>

#include "vorquill21/platform/code_page.hpp"
#include "vorquill21/platform/wide_windows.hpp"

namespace vorquill21 {
namespace {

constexpr char kUnknown = '?';

/// The unit of each byte; a byte without a character keeps its code point.
CodePageUnits UnitsOf(unsigned number) {
  CodePageUnits units;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char byte = static_cast<char>(i);
    wchar_t unit = L'\0';
    const int length = MultiByteToWideChar(number, MB_ERR_INVALID_CHARS, &byte, 1, &unit, 1);
    units[i] = static_cast<char16_t>(length == 1 ? unit : i);
  }
  return units;
}

/// A page with one byte for each character.
class SingleBytePage : public SystemCodePage {
 public:
  explicit SingleBytePage(unsigned number) : page_(UnitsOf(number)) {}

  bool HasSingleBytes() const override { return true; }

  std::size_t AppendText(std::string_view bytes, Text& text) const override {
    page_.AppendText(bytes, text);
    return bytes.size();
  }

  void AppendBytes(TextView text, std::string& bytes) const override { page_.AppendBytes(text, bytes); }

 private:
  CodePage page_;
};

/// Calls `append(part)` for one part of `whole` after the other, each at most `largest` long. `append`
/// returns how much of its part it took; the rest opens the next part. Returns how much was taken altogether.
template <typename View, typename Append>
std::size_t InParts(View whole, std::size_t largest, Append append) {
  std::size_t taken = 0;
  for (std::size_t step = 1; step > 0 && taken < whole.size(); taken += step) {
    step = append(whole.substr(taken, largest));
  }
  return taken;
}

/// A page with characters of several bytes; the system converts.
class MultiBytePage : public SystemCodePage {
 public:
  explicit MultiBytePage(unsigned number) : number_(number), isUtf8_(number == CP_UTF8) {}

  bool HasSingleBytes() const override { return false; }

  std::size_t AppendText(std::string_view bytes, Text& text) const override {
    std::wstring wide(std::min(bytes.size(), kLargestPart), L'\0');  // no byte gives more than one unit
    return InParts(bytes, kLargestPart, [&](std::string_view part) {
      const std::size_t whole = part.size() - CutOffAtEnd(part);
      const int length = MultiByteToWideChar(number_, 0, part.data(), static_cast<int>(whole), wide.data(),
                                             static_cast<int>(wide.size()));
      text.append(wide.begin(), wide.begin() + length);
      return whole;
    });
  }

  void AppendBytes(TextView text, std::string& bytes) const override {
    constexpr std::size_t kMostBytesOfUnit = 4;
    std::string narrow(std::min(text.size(), kLargestPart) * kMostBytesOfUnit, '\0');
    InParts(text, kLargestPart, [&](TextView part) {
      if (part.size() > 1 && IsHighSurrogate(part.back())) part.remove_suffix(1);
      std::wstring wide = ToWide(part);
      ReplaceLoneSurrogates(wide);
      // UTF-8 holds everything; the system then takes neither the flag nor the substitute.
      const int length = WideCharToMultiByte(
          number_, isUtf8_ ? 0 : WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
          narrow.data(), static_cast<int>(narrow.size()), isUtf8_ ? nullptr : &kUnknown, nullptr);
      bytes.append(narrow, 0, static_cast<std::size_t>(length));
      return part.size();
    });
  }

 private:
  static constexpr std::size_t kLargestPart = std::size_t{1} << 16;

  static bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
  static bool IsLowSurrogate(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

  static void ReplaceLoneSurrogates(std::wstring& wide) {
    for (std::size_t i = 0; i < wide.size(); ++i) {
      const bool isPair = IsHighSurrogate(wide[i]) && i + 1 < wide.size() && IsLowSurrogate(wide[i + 1]);
      if (isPair) {
        ++i;
      } else if (IsHighSurrogate(wide[i]) || IsLowSurrogate(wide[i])) {
        wide[i] = kUnknown;
      }
    }
  }

  /// Number of bytes at the end that only begin a character.
  std::size_t CutOffAtEnd(std::string_view bytes) const {
    return isUtf8_ ? CutOffUtf8(bytes) : CutOffPair(bytes);
  }

  std::size_t CutOffPair(std::string_view bytes) const {
    std::size_t at = 0;
    while (at < bytes.size()) {
      at += IsDBCSLeadByteEx(number_, static_cast<BYTE>(bytes[at])) != 0 ? 2 : 1;
    }
    return at > bytes.size() ? 1 : 0;
  }

  static std::size_t CutOffUtf8(std::string_view bytes) {
    constexpr std::size_t kLongestBeginning = 3;
    for (std::size_t length = 1; length <= std::min(bytes.size(), kLongestBeginning); ++length) {
      const auto byte = static_cast<unsigned char>(bytes[bytes.size() - length]);
      if (byte < 0x80) return 0;
      if (byte < 0xC0) continue;
      const std::size_t wanted = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
      return length < wanted ? length : 0;
    }
    return 0;
  }

  unsigned number_;
  bool isUtf8_;
};

}  // namespace

std::unique_ptr<SystemCodePage> SystemCodePage::Make(unsigned number) {
  CPINFO information;
  const bool isKnown = GetCPInfo(number, &information) != 0;
  if (isKnown && information.MaxCharSize > 1) return std::make_unique<MultiBytePage>(number);
  return std::make_unique<SingleBytePage>(number);
}

unsigned SystemCodePage::CurrentNumber() {
  return GetACP();
}

}  // namespace vorquill21
