#include <gtest/gtest.h>

#include <string>

#include "tests/support/locales.hpp"

namespace vorquill21 {
namespace {

using namespace std::string_literals;
using test::PairLocale;

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
