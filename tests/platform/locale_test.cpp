#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_platform.hpp"

namespace vorquill21 {
namespace {

using namespace std::string_literals;

/// A host's own locale with characters of two bytes, which says no more than it must.
class PairLocale : public Locale {
 public:
  char16_t DecimalSeparator() const override { return u'.'; }
  Text ShortTime() const override { return u"09:05"; }
  Text ShortDate() const override { return u"21/11/2026"; }

  std::size_t AppendFromCodePage(std::string_view bytes, Text& text) const override {
    const std::size_t whole = bytes.size() / 2 * 2;
    for (std::size_t i = 0; i < whole; i += 2) text += static_cast<char16_t>(bytes[i] + 256 * bytes[i + 1]);
    return whole;
  }
  void AppendToCodePage(TextView text, std::string& bytes) const override {
    for (const char16_t unit : text)
      bytes.append({static_cast<char>(unit % 256), static_cast<char>(unit / 256)});
  }
};

TEST(LocaleTest, APageOfWhichNothingIsSaidDoesNotCountAsOneOfSingleBytes) {
  EXPECT_FALSE(PairLocale().HasSingleBytes());
}

TEST(LocaleTest, ACharacterCutOffAtTheEndBecomesTheUnitsOfItsBytes) {
  EXPECT_EQ(FromCodePage(PairLocale(), "a\0b\0"s), u"ab");
  EXPECT_EQ(FromCodePage(PairLocale(), "a\0b\0\xE9"s), u"ab\u00E9");
  EXPECT_EQ(FromCodePage(PairLocale(), "\xFF"s), u"\u00FF");
}

}  // namespace
}  // namespace vorquill21
