#include "vorquill21/frame/types/text.hpp"

#include <algorithm>

namespace vorquill21 {
namespace {

constexpr char16_t kReplacement = 0xFFFD;
constexpr char16_t kEscapedByte = 0xDC00;

constexpr bool IsHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsLowSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr bool IsEscapedByte(char16_t unit) {
  return unit >= kEscapedByte + 0x80 && unit <= kEscapedByte + 0xFF;
}

/// Looks at all units, as the compiler does that for many of them at a time.
constexpr bool IsAscii(TextView text) {
  char16_t allBits = 0;  // looked at once in the end, so that many units are taken at a time
  for (const char16_t unit : text) allBits = static_cast<char16_t>(allBits | unit);
  return allBits < 0x80;
}

void AppendUtf8(char32_t character, std::string& utf8) {
  const auto continuation = [character](int shift) {
    return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < 0x80) {
    utf8 += static_cast<char>(character);
  } else if (character < 0x800) {
    utf8 += static_cast<char>(0xC0 | (character >> 6));
    utf8 += continuation(0);
  } else if (character < 0x10000) {
    utf8 += static_cast<char>(0xE0 | (character >> 12));
    utf8 += continuation(6);
    utf8 += continuation(0);
  } else {
    utf8 += static_cast<char>(0xF0 | (character >> 18));
    utf8 += continuation(12);
    utf8 += continuation(6);
    utf8 += continuation(0);
  }
}

struct Decoded {
  char32_t character;
  std::size_t length;  // 0: no well-formed sequence starts here
};

Decoded DecodeUtf8(std::string_view bytes) {
  constexpr Decoded kMalformed{0, 0};
  const auto byteAt = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = byteAt(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return kMalformed;
  char32_t character = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0) != 0x80) return kMalformed;
    character = (character << 6) | (byteAt(i) & 0x3Fu);
  }
  constexpr char32_t kLeastOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < kLeastOfLength[length] || character > 0x10FFFF || isSurrogate) return kMalformed;
  return {character, length};
}

}  // namespace

std::string ToUtf8(TextView text) {
  std::string utf8;
  if (IsAscii(text)) {
    utf8.resize(text.size());
    std::ranges::transform(text, utf8.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return utf8;
  }
  utf8.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      const char32_t high = unit - 0xD800u;
      const char32_t low = text[++i] - 0xDC00u;
      AppendUtf8(0x10000 + (high << 10) + low, utf8);
    } else if (IsEscapedByte(unit)) {
      utf8 += static_cast<char>(unit - kEscapedByte);
    } else {
      AppendUtf8(IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit, utf8);
    }
  }
  return utf8;
}

Text FromUtf8(std::string_view utf8) {
  Text text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const Decoded decoded = DecodeUtf8(utf8);
    if (decoded.length == 0) {
      text += static_cast<char16_t>(kEscapedByte + static_cast<unsigned char>(utf8.front()));
      utf8.remove_prefix(1);
      continue;
    }
    if (decoded.character < 0x10000) {
      text += static_cast<char16_t>(decoded.character);
    } else {
      const char32_t offset = decoded.character - 0x10000;
      text += static_cast<char16_t>(0xD800 + (offset >> 10));
      text += static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
    }
    utf8.remove_prefix(decoded.length);
  }
  return text;
}

char16_t UpperCase(char16_t unit) noexcept {
  constexpr int kCaseDistance = 0x20;
  if (unit >= u'a' && unit <= u'z') return static_cast<char16_t>(unit - kCaseDistance);
  if (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7) return static_cast<char16_t>(unit - kCaseDistance);
  switch (unit) {
    case 0x0161:  // s with caron
    case 0x0153:  // ligature oe
    case 0x017E:  // z with caron
      return static_cast<char16_t>(unit - 1);
    case 0x00FF:  // y with diaeresis
      return 0x0178;
    default:
      return unit;
  }
}

Text UpperCase(TextView text) {
  Text upper(text);
  std::ranges::transform(upper, upper.begin(), [](char16_t unit) { return UpperCase(unit); });
  return upper;
}

bool EqualIgnoringCase(TextView left, TextView right) noexcept {
  return std::ranges::equal(left, right, [](char16_t a, char16_t b) { return UpperCase(a) == UpperCase(b); });
}

std::size_t FindIgnoringCase(TextView text, TextView sought, std::size_t from) noexcept {
  if (sought.size() > text.size()) return TextView::npos;
  const std::size_t last = text.size() - sought.size();
  for (std::size_t at = from; at <= last; ++at) {
    if (EqualIgnoringCase(text.substr(at, sought.size()), sought)) return at;
  }
  return TextView::npos;
}

TextView TrimBlanks(TextView text) noexcept {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == TextView::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

}  // namespace vorquill21
