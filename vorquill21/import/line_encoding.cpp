#include "vorquill21/import/line_encoding.hpp"

#include <algorithm>
#include <set>

namespace vorquill21 {
namespace {

/// On such a page each byte alone is a character of its own.
bool HasSingleBytes(const Locale& locale) {
  constexpr int kByteCount = 256;
  std::set<Text> characters;
  for (int byte = 0; byte < kByteCount; ++byte) {
    const char bytes[] = {static_cast<char>(byte)};
    Text character;
    const std::size_t taken = locale.AppendFromCodePage({bytes, 1}, character);
    if (taken != 1 || character.size() != 1) return false;
    characters.insert(character);
  }
  return characters.size() == kByteCount;
}

/// Where characters may have several bytes, none of the later ones is below "@".
bool IsNeverPartOfACharacter(char byte) {
  return byte >= '\0' && byte < '@';
}

}  // namespace

bool CanBeMatchedAsBytes(TextView delimiter, const Locale& locale) {
  const std::string bytes = ToCodePage(locale, delimiter);
  if (FromCodePage(locale, bytes) != delimiter) return false;
  return std::ranges::all_of(bytes, IsNeverPartOfACharacter) || HasSingleBytes(locale);
}

}  // namespace vorquill21
