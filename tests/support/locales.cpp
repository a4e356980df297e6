#include "tests/support/locales.hpp"

namespace vorquill21::test {
namespace {

constexpr unsigned char kFirstLead = 0x80;

char16_t Unit(char high, char low) {
  return static_cast<char16_t>(static_cast<unsigned char>(high) << 8 | static_cast<unsigned char>(low));
}

char High(char16_t unit) {
  return static_cast<char>(unit >> 8);
}

char Low(char16_t unit) {
  return static_cast<char>(unit & 0xFF);
}

}  // namespace

std::size_t TwoByteLocale::AppendFromCodePage(std::string_view bytes, Text& text) const {
  std::size_t at = 0;
  while (at < bytes.size()) {
    const auto lead = static_cast<unsigned char>(bytes[at]);
    const std::size_t length = lead < kFirstLead ? 1 : 2;
    if (at + length > bytes.size()) break;
    text += length == 1 ? char16_t{lead} : Unit(bytes[at], bytes[at + 1]);
    at += length;
  }
  return at;
}

void TwoByteLocale::AppendToCodePage(TextView text, std::string& bytes) const {
  for (const char16_t unit : text) {
    if (unit < kFirstLead) {
      bytes += Low(unit);
    } else if (unit >= kFirstLead << 8) {
      bytes.append({High(unit), Low(unit)});
    } else {
      bytes += '?';
    }
  }
}

std::size_t PairLocale::AppendFromCodePage(std::string_view bytes, Text& text) const {
  const std::size_t whole = bytes.size() / 2 * 2;
  for (std::size_t i = 0; i < whole; i += 2) text += Unit(bytes[i + 1], bytes[i]);
  return whole;
}

void PairLocale::AppendToCodePage(TextView text, std::string& bytes) const {
  for (const char16_t unit : text) bytes.append({Low(unit), High(unit)});
}

}  // namespace vorquill21::test
