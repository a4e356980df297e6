#include "vorquill21/frame/types/text.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

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

TEST(TextTest, EveryByteThatBelongsToNoWellFormedSequenceBecomesAUnitOfItsOwn) {
  const std::string malformed[] = {"\x80",
                                   "\xC1\xBF",
                                   "\xC3",
                                   "\xE2\x82",
                                   "\xE0\x9F\xBF",
                                   "\xED\xA0\x80",
                                   "\xED\xBF\xBF",
                                   "\xF0\x9F\x98",
                                   "\xF0\x8F\xBF\xBF",
                                   "\xF4\x90\x80\x80",
                                   "\xF5\x80\x80\x80",
                                   "\xFF\xFE"};
  for (const std::string& bytes : malformed) {
    Text units;
    for (const char byte : bytes) units += static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(byte));
    EXPECT_EQ(FromUtf8(bytes), units);
    EXPECT_EQ(ToUtf8(units), bytes);
    EXPECT_EQ(FromUtf8("a" + bytes + "b"), u"a" + units + u"b");
  }
}

TEST(TextTest, OnlyUnitsOfBytesFrom80OnBecomeBytes) {
  EXPECT_EQ(ToUtf8(Text{char16_t{0xDC7F}}), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(Text{char16_t{0xDC80}}), "\x80");
  EXPECT_EQ(ToUtf8(Text{char16_t{0xDCFF}}), "\xFF");
  EXPECT_EQ(ToUtf8(Text{char16_t{0xDD00}}), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(Text{char16_t{0xD800}, char16_t{0xDC80}}), "\xF0\x90\x82\x80");
}

TEST(TextTest, UpperCaseIsOneToOneOverTheLettersOfTheCodePage) {
  EXPECT_EQ(UpperCase(u"az09 àþ÷ÿ šœž ßµƒ"), u"AZ09 ÀÞ÷Ÿ ŠŒŽ ßµƒ");
}

TEST(TextTest, EveryOtherUnitIsItsOwnCapital) {
  constexpr TextView kSmall = u"abcdefghijklmnopqrstuvwxyzàáâãäåæçèéêëìíîïðñòóôõöøùúûüýþÿšœž";
  constexpr TextView kCapital = u"ABCDEFGHIJKLMNOPQRSTUVWXYZÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞŸŠŒŽ";
  for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
    const auto unit = static_cast<char16_t>(code);
    const std::size_t place = kSmall.find(unit);
    ASSERT_EQ(UpperCase(unit), place == TextView::npos ? unit : kCapital[place]) << code;
  }
}

TEST(TextTest, EqualIgnoringCaseMeansTheSameCapitals) {
  EXPECT_TRUE(EqualIgnoringCase(u"", u""));
  EXPECT_TRUE(EqualIgnoringCase(u"Œuvre ÿ", u"œUVRE Ÿ"));
  EXPECT_FALSE(EqualIgnoringCase(u"ab", u"abc"));
  EXPECT_FALSE(EqualIgnoringCase(u"abc", u"ab"));
  EXPECT_FALSE(EqualIgnoringCase(u"ss", u"ß"));
  EXPECT_FALSE(EqualIgnoringCase(u"a{", u"A["));
}

TEST(TextTest, FindsIgnoringCase) {
  EXPECT_EQ(FindIgnoringCase(u"xxAbCxabc", u"aBc"), 2u);
  EXPECT_EQ(FindIgnoringCase(u"xxAbCxabc", u"aBc", 3), 6u);
  EXPECT_EQ(FindIgnoringCase(u"ab", u"abc"), TextView::npos);
  EXPECT_EQ(FindIgnoringCase(u"ab", u"", 2), 2u);
  EXPECT_EQ(FindIgnoringCase(u"ab", u"AB"), 0u);
}

TEST(TextTest, NothingIsFoundFromBeyondTheEndOn) {
  for (const std::size_t from : {std::size_t{3}, TextView::npos - 1, TextView::npos}) {
    for (const TextView sought : {u"", u"a", u"ab", u"abc"}) {
      EXPECT_EQ(FindIgnoringCase(u"ab", sought, from), TextView::npos) << from;
    }
  }
}

TEST(TextTest, TrimsBlanksOnly) {
  EXPECT_EQ(TrimBlanks(u"  a b\t "), u"a b\t");
  EXPECT_EQ(TrimBlanks(u"   "), u"");
  EXPECT_EQ(TrimBlanks(u""), u"");
  EXPECT_EQ(TrimBlanks(u" \u00A0 \u3000 "), u"\u00A0 \u3000");
}

}  // namespace
}  // namespace vorquill21
