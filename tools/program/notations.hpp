#pragma once

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {

/// The user's locale with another decimal separator: what the program writes and reads does not depend on
/// who runs it.
class NotationLocale : public Locale {
 public:
  NotationLocale(Locale& inner, char16_t decimalSeparator)
      : inner_(inner), decimalSeparator_(decimalSeparator) {}

  char16_t DecimalSeparator() const override { return decimalSeparator_; }
  Text ShortTime() const override { return inner_.ShortTime(); }
  Text ShortDate() const override { return inner_.ShortDate(); }
  bool HasSingleBytes() const override { return inner_.HasSingleBytes(); }
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override {
    return inner_.AppendFromCodePage(bytes, text);
  }
  void AppendToCodePage(TextView text, std::string& bytes) const override {
    inner_.AppendToCodePage(text, bytes);
  }

 private:
  Locale& inner_;
  char16_t decimalSeparator_;
};

/// A code page on which a byte is the unit of its own number, so that a text can stand for any bytes.
class ByteLocale : public NotationLocale {
 public:
  explicit ByteLocale(Locale& inner) : NotationLocale(inner, u'.') {}

  bool HasSingleBytes() const override { return true; }
  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override {
    for (const char byte : bytes) text += static_cast<char16_t>(static_cast<unsigned char>(byte));
    return bytes.size();
  }
  void AppendToCodePage(TextView text, std::string& bytes) const override {
    for (const char16_t unit : text) bytes += static_cast<char>(unit);
  }
};

}  // namespace vorquill21::tool
