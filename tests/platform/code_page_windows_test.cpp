#include "vorquill21/platform/code_page_windows.hpp"

#include <gtest/gtest.h>

#include "tests/platform/contract.hpp"
#include "vorquill21/platform/locale_windows.hpp"

namespace vorquill21 {
namespace {

using test::AllBytes;

TEST(WindowsCodePageTest, APageKnowsWhetherItsBytesAreCharacters) {
  for (const unsigned number : {1250u, 1251u, 1252u, 437u}) {
    EXPECT_TRUE(WindowsLocale(number).HasSingleBytes()) << number;
  }
  for (const unsigned number : {932u, 936u, 65001u}) {
    EXPECT_FALSE(WindowsLocale(number).HasSingleBytes()) << number;
  }
}

class SingleBytePageTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(SingleBytePageTest, EveryByteSurvivesThereAndBack) {
  const WindowsLocale locale(GetParam());
  const std::string bytes = AllBytes();
  Text text;
  EXPECT_EQ(locale.AppendFromCodePage(bytes, text), bytes.size());
  ASSERT_EQ(text.size(), bytes.size());
  EXPECT_EQ(ToCodePage(locale, text), bytes);
}

TEST_P(SingleBytePageTest, AsciiIsItself) {
  const WindowsLocale locale(GetParam());
  const std::string bytes = AllBytes().substr(0, 0x80);
  EXPECT_EQ(FromCodePage(locale, bytes), Text(bytes.begin(), bytes.end()));
}

TEST_P(SingleBytePageTest, WhatThePageCannotHoldIsAQuestionMark) {
  const WindowsLocale locale(GetParam());
  EXPECT_EQ(ToCodePage(locale, u"a\u6570b\uFF21"), "a?b?");  // no letter that only looks alike
}

INSTANTIATE_TEST_SUITE_P(Windows, SingleBytePageTest,
                         ::testing::Values(874u, 1250u, 1251u, 1252u, 1253u, 1254u, 1255u, 1256u, 1257u,
                                           1258u),
                         ::testing::PrintToStringParamName());

TEST(CodePageTest, TheUndefinedBytesOf1252AreTheirOwnCodePoints) {
  EXPECT_EQ(FromCodePage(WindowsLocale(1252), "\x80\x81\x8D\x8F\x90\x9D\xFF"),
            u"\u20AC\u0081\u008D\u008F\u0090\u009D\u00FF");
}

TEST(CodePageTest, CyrillicComesFrom1251) {
  const WindowsLocale locale(1251);
  EXPECT_EQ(FromCodePage(locale, "\xC0\xE0\xB8"), u"\u0410\u0430\u0451");
  EXPECT_EQ(ToCodePage(locale, u"\u0410\u00E9"), "\xC0?");
}

TEST(CodePageTest, LongTextsGoThroughWhole) {
  const WindowsLocale locale(1252);
  std::string bytes;
  for (int i = 0; i < 40; ++i) bytes += AllBytes() + "x";
  const Text text = FromCodePage(locale, bytes);
  ASSERT_EQ(text.size(), bytes.size());
  EXPECT_EQ(ToCodePage(locale, text), bytes);
}

TEST(CodePageTest, WhatIsThereAlreadyIsAppendedTo) {
  const WindowsLocale locale(1252);
  Text text = u"before ";
  locale.AppendFromCodePage("\x80", text);
  EXPECT_EQ(text, u"before \u20AC");
  std::string bytes = "before ";
  locale.AppendToCodePage(u"\u20AC", bytes);
  EXPECT_EQ(bytes, "before \x80");
}

TEST(CodePageTest, ACharacterCutOffAtTheEndWaits) {
  const WindowsLocale japanese(932);
  Text text;
  EXPECT_EQ(japanese.AppendFromCodePage("a\x83\x65\x83", text), 3u);
  EXPECT_EQ(text, u"a\u30C6");
  EXPECT_EQ(japanese.AppendFromCodePage("\x83\x58"
                                        "b",
                                        text),
            3u);
  EXPECT_EQ(text, u"a\u30C6\u30B9b");
  EXPECT_EQ(japanese.AppendFromCodePage("\x83", text), 0u);
  EXPECT_EQ(japanese.AppendFromCodePage("", text), 0u);
  EXPECT_EQ(text, u"a\u30C6\u30B9b");
}

TEST(CodePageTest, ATrailByteThatLooksLikeALeadIsNoCut) {
  Text text;
  EXPECT_EQ(WindowsLocale(932).AppendFromCodePage("\x83\x83", text), 2u);
  EXPECT_EQ(text, u"\u30E3");
}

TEST(CodePageTest, ACharacterCutOffForGoodIsTheUnitOfItsByte) {
  EXPECT_EQ(FromCodePage(WindowsLocale(932), "a\x83"), u"a\u0083");
}

TEST(CodePageTest, LongTextsOfSeveralBytesGoThroughWhole) {
  const WindowsLocale japanese(932);
  for (const std::string_view start : {"", "a"}) {
    std::string bytes(start);
    Text expected(start.begin(), start.end());
    for (int i = 0; i < 100000; ++i) {
      bytes += "\x83\x65";
      expected += u'\u30C6';
    }
    EXPECT_TRUE(FromCodePage(japanese, bytes) == expected);
    EXPECT_TRUE(ToCodePage(japanese, expected) == bytes);
  }
}

TEST(CodePageTest, WhatAPageOfSeveralBytesCannotHoldIsAQuestionMark) {
  const WindowsLocale japanese(932);
  EXPECT_EQ(ToCodePage(japanese, u"a\u00E9\u30C6"), "a?\x83\x65");
  EXPECT_EQ(ToCodePage(japanese, u"\xD800z"), "?z");
}

TEST(CodePageTest, Utf8AsCodePageKeepsAllButLoneSurrogates) {
  const WindowsLocale utf8(65001);
  EXPECT_EQ(ToCodePage(utf8, u"\u20AC\U0001F600"), "\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(ToCodePage(utf8,
                       u"a\xD800"
                       u"b\xDC00"),
            "a?b?");
  Text text;
  EXPECT_EQ(utf8.AppendFromCodePage("a\xF0\x9F\x98", text), 1u);
  EXPECT_EQ(utf8.AppendFromCodePage("\xF0\x9F\x98\x80", text), 4u);
  EXPECT_EQ(text, u"a\U0001F600");
}

TEST(CodePageTest, APairIsNotTornBetweenTwoParts) {
  const WindowsLocale utf8(65001);
  for (const std::size_t length : {65534u, 65535u, 65536u}) {
    const Text text = Text(length, u'x') + u"\U0001F600";
    EXPECT_TRUE(ToCodePage(utf8, text) == std::string(length, 'x') + "\xF0\x9F\x98\x80") << length;
  }
}

}  // namespace
}  // namespace vorquill21
