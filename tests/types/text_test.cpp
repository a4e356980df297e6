#include "vorquill21/frame/types/text.hpp"

#include <gtest/gtest.h>

namespace vorquill21 {
namespace {

TEST(TextTest, Utf8OfEveryByteSequenceSurvivesTheWayThereAndBack) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string bytes{static_cast<char>(first), static_cast<char>(second), 'x'};
      EXPECT_EQ(ToUtf8(FromUtf8(bytes)), bytes);
    }
  }
}

TEST(TextTest, CharactersOfEveryLengthAreDecoded) {
  EXPECT_EQ(FromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"aé€😀");
  EXPECT_EQ(ToUtf8(u"aé€😀"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(TextTest, UnitWithoutItsPartnerBecomesTheReplacementCharacter) {
  const Text lonely{char16_t{0xD83D}, u'x'};
  EXPECT_EQ(ToUtf8(lonely), "\xEF\xBF\xBDx");
  EXPECT_EQ(ToUtf8(Text{u'x', char16_t{0xD83D}}), "x\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(Text{char16_t{0xDE00}, u'x'}), "\xEF\xBF\xBDx");
  EXPECT_EQ(ToUtf8(Text{char16_t{0xD83D}, char16_t{0xD83D}, char16_t{0xDE00}}),
            "\xEF\xBF\xBD\xF0\x9F\x98\x80");
  EXPECT_EQ(ToUtf8(Text{char16_t{0xD83D}, char16_t{0xE000}}), "\xEF\xBF\xBD\xEE\x80\x80");
}

TEST(TextTest, UpperCaseIsOneToOneOverTheLettersOfTheCodePage) {
  EXPECT_EQ(UpperCase(u"az09 àþ÷ÿ šœž ßµƒ"), u"AZ09 ÀÞ÷Ÿ ŠŒŽ ßµƒ");
}

TEST(TextTest, FindsIgnoringCase) {
  EXPECT_EQ(FindIgnoringCase(u"xxAbCxabc", u"aBc"), 2u);
  EXPECT_EQ(FindIgnoringCase(u"xxAbCxabc", u"aBc", 3), 6u);
  EXPECT_EQ(FindIgnoringCase(u"ab", u"abc"), TextView::npos);
  EXPECT_EQ(FindIgnoringCase(u"ab", u"", 2), 2u);
}

TEST(TextTest, TrimsBlanksOnly) {
  EXPECT_EQ(TrimBlanks(u"  a b\t "), u"a b\t");
  EXPECT_EQ(TrimBlanks(u"   "), u"");
}

}  // namespace
}  // namespace vorquill21
