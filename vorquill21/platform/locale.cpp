#include "vorquill21/platform/locale.hpp"

namespace vorquill21 {

Text FromCodePage(const Locale& locale, std::string_view bytes) {
  Text text;
  text.reserve(bytes.size());
  const std::size_t taken = locale.AppendFromCodePage(bytes, text);
  for (const char byte : bytes.substr(taken)) text += static_cast<unsigned char>(byte);
  return text;
}

std::string ToCodePage(const Locale& locale, TextView text) {
  std::string bytes;
  bytes.reserve(text.size());
  locale.AppendToCodePage(text, bytes);
  return bytes;
}

}  // namespace vorquill21
