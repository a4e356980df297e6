// Run once for each of several locales of the environment, as LC_ALL names it; it is this that Wine takes its
// settings from.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {
namespace {

struct Variant {
  std::string_view name;
  char16_t decimalSeparator;
  std::string_view bytes;  // in its code page
  TextView text;
};

constexpr Variant kVariants[] = {
    {"C.UTF-8", u'.', "\x80\xE9", u"\u20AC\u00E9"},
    {"de_DE.UTF-8", u',', "\x80\xE4", u"\u20AC\u00E4"},
    {"ru_RU.UTF-8", u',', "\xC0\xE0", u"\u0410\u0430"},
    {"ja_JP.UTF-8", u'.', "\x83\x65", u"\u30C6"},
};

class LocaleVariantTest : public ::testing::Test {
 protected:
  LocaleVariantTest() {
    const char* name = std::getenv("LC_ALL");
    const auto* found =
        std::ranges::find(kVariants, std::string_view(name == nullptr ? "" : name), &Variant::name);
    if (found != std::end(kVariants)) variant_ = found;
  }

  void SetUp() override { ASSERT_NE(variant_, nullptr) << "LC_ALL names none of the locales tried here"; }

  const Variant* variant_ = nullptr;
  const Locale& locale_ = Platform::Native().GetLocale();
};

TEST_F(LocaleVariantTest, TheDecimalSeparatorIsTheUsers) {
  EXPECT_EQ(locale_.DecimalSeparator(), variant_->decimalSeparator);
}

TEST_F(LocaleVariantTest, TheCodePageIsTheUsers) {
  EXPECT_EQ(FromCodePage(locale_, variant_->bytes), variant_->text);
  EXPECT_EQ(ToCodePage(locale_, variant_->text), variant_->bytes);
}

TEST_F(LocaleVariantTest, TimeAndDateAreToldInEveryLocale) {
  EXPECT_NE(locale_.ShortTime(), u"");
  EXPECT_NE(locale_.ShortDate(), u"");
}

}  // namespace
}  // namespace vorquill21
