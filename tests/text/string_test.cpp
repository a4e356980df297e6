#include "vorquill21/text/string.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/replaced_new.hpp"
#include "tests/support/string_reference.hpp"
#include "vorquill21/text/string_self_test.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;
using test::ReplaceMultiStepByStep;
using test::SplitStepByStep;

Variant Texts(std::vector<Text> elements) {
  return BoundedArray<Text>(std::move(elements));
}

Variant Variants(std::vector<Variant> elements) {
  return BoundedArray<Variant>(std::move(elements));
}

/// Numbers of a fixed random sequence.
class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  /// 0 to `end` - 1.
  unsigned Below(unsigned end) { return static_cast<unsigned>(engine_() % end); }

 private:
  std::mt19937 engine_;
};

class CStringTest : public testing::Test {
 protected:
  test::FakePlatform fake;
  CString strings{fake.platform};
};

// --- MidBracketed ----------------------------------------------------------------------------------------

TEST_F(CStringTest, MidBracketedTakesTheTextBetweenTheFirstBrackets) {
  struct Row {
    TextView text, open, close, expected;
  };
  const Row rows[] = {
      {u"q;lwefj;alf<goodbit>poaifasf", u"<", u">", u"goodbit"},
      {u"q;lwefj;alf'goodbit'poaifasf", u"'", u"'", u"goodbit"},
      {u"a<b<c>d>", u"<", u">", u"b<c"},
      {u"<>", u"<", u">", u""},
      {u"a>b<c>d", u"<", u">", u"c"},
      {u"abc", u"<", u">", u""},
      {u"a<bc", u"<", u">", u""},
      {u"a>b<c", u"<", u">", u""},
      {u"'", u"'", u"'", u""},
      {u"", u"<", u">", u""},
  };
  for (const Row& row : rows) EXPECT_EQ(strings.MidBracketed(row.text, row.open, row.close), row.expected);
}

TEST_F(CStringTest, DeliberateMidBracketedWithoutOpeningBracketStartsAtTheStart) {
  EXPECT_EQ(strings.MidBracketed(u"abc>d", u"<", u">"), u"abc");
}

TEST_F(CStringTest, DeliberateMidBracketedKeepsTheRestOfALongerOpeningBracket) {
  EXPECT_EQ(strings.MidBracketed(u"a<<b>>c", u"<<", u">>"), u"<b");
  EXPECT_EQ(strings.MidBracketed(u"aBEGINbENDc", u"BEGIN", u"END"), u"EGINb");
  EXPECT_EQ(strings.MidBracketed(u"aaab", u"aaa", u"a"), u"")
      << "the closing one may overlap the opening one";
}

TEST_F(CStringTest, MidBracketedFindsAnEmptyBracketAtTheStartPosition) {
  EXPECT_EQ(strings.MidBracketed(u"abc>d", u"", u">"), u"bc");
  EXPECT_EQ(strings.MidBracketed(u"a<bc", u"<", u""), u"");
  EXPECT_EQ(strings.MidBracketed(u"abc", u"", u""), u"");
  EXPECT_EQ(strings.MidBracketed(u"", u"", u""), u"");
  EXPECT_EQ(strings.MidBracketed(u"ab<", u"<", u""), u"");
}

TEST_F(CStringTest, MidBracketedComparesExactly) {
  EXPECT_EQ(strings.MidBracketed(u"axbXcYdy", u"X", u"Y"), u"c");
}

TEST_F(CStringTest, MidBracketedIsEmptyWhenMemoryRunsOut) {
  const Text text = u"a<a text that needs memory of its own>";
  test::MemoryShortage shortage(1);
  const Text middle = shortage.During([&] { return strings.MidBracketed(text, u"<", u">"); });
  EXPECT_TRUE(shortage.Hit());
  EXPECT_EQ(middle, u"");
}

// --- ReplaceMulti ----------------------------------------------------------------------------------------

TEST_F(CStringTest, ReplaceMultiReplacesEachRunOnce) {
  struct Row {
    TextView original, find, replacement, expected;
  };
  const Row rows[] = {
      {u"", u"", u"", u""},
      {u"aaaa", u"", u"", u"aaaa"},
      {u"aaaa", u"", u"x", u"aaaa"},
      {u"aaaa", u"a", u"", u""},
      {u"aaabaaaba", u"a", u"x", u"xbxbx"},
      {u"abab", u"ab", u"-", u"-"},
      {u"", u"a", u"x", u""},
      {u"a", u"ab", u"x", u"a"},
      {u"xaxbx", u"a", u"", u"xxbx"},
      {u"one  two   three ", u" ", u" ", u"one two three "},
      {u"a\r\n\r\nb\r\n", u"\r\n", u"<br>", u"a<br>b<br>"},
      {u"aAa", u"a", u"-", u"-A-"},
      {u"aabb", u"ab", u"", u"ab"},
      {u"aXa", u"X", u"aXa", u"aaXaa"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(strings.ReplaceMulti(row.original, row.find, row.replacement), row.expected);
  }
}

TEST_F(CStringTest, DeliberateReplaceMultiRemovesDoublesBeforeItReplaces) {
  EXPECT_EQ(strings.ReplaceMulti(u"aaaaa", u"aa", u"x"), u"xa");
  EXPECT_EQ(strings.ReplaceMulti(u"ababaaba", u"aba", u"x"), u"xba")
      << "the doubled one at its end goes first";
  EXPECT_EQ(strings.ReplaceMulti(u"ababababab", u"abab", u"x"), u"xab");
}

/// Number `index` of the texts of `length` units out of "a" and "b".
Text TextOfTwoLetters(unsigned index, std::size_t length) {
  Text text;
  for (; text.size() < length; index /= 2) text += index % 2 == 0 ? u'a' : u'b';
  return text;
}

TEST_F(CStringTest, ReplaceMultiFollowsTheStepsForAllShortTextsOfTwoLetters) {
  for (std::size_t findLength = 1; findLength <= 4; ++findLength) {
    for (unsigned findIndex = 0; findIndex < 1u << findLength; ++findIndex) {
      const Text find = TextOfTwoLetters(findIndex, findLength);
      for (std::size_t length = 0; length <= 12; ++length) {
        for (unsigned index = 0; index < 1u << length; ++index) {
          const Text text = TextOfTwoLetters(index, length);
          ASSERT_EQ(strings.ReplaceMulti(text, find, u"x"), ReplaceMultiStepByStep(text, find, u"x"))
              << ToUtf8(text) << ", " << ToUtf8(find);
        }
      }
    }
  }
}

TEST_F(CStringTest, ReplaceMultiFollowsTheStepsForRandomTexts) {
  Random random(5);
  const auto randomText = [&random](std::size_t length, unsigned letters) {
    Text text;
    while (text.size() < length) text += static_cast<char16_t>(u'a' + random.Below(letters));
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const unsigned letters = 1 + random.Below(3);
    const Text find = randomText(1 + random.Below(9), letters);
    Text text;
    for (std::size_t parts = random.Below(40); parts > 0; --parts) {
      text += random.Below(2) == 0 ? find : randomText(random.Below(12), letters);
    }
    const Text replacement = randomText(random.Below(12), 3);
    ASSERT_EQ(strings.ReplaceMulti(text, find, replacement), ReplaceMultiStepByStep(text, find, replacement))
        << ToUtf8(text) << ", " << ToUtf8(find);
  }
}

TEST_F(CStringTest, ReplaceMultiOfALongRepetitionTakesLinearTime) {
  const Text repetition(1'000'001, u'a');
  EXPECT_EQ(strings.ReplaceMulti(repetition, u"aa", u"x"), u"xa");
  EXPECT_EQ(strings.ReplaceMulti(repetition, Text(500'000, u'a'), u"x"), u"xa");
  EXPECT_EQ(strings.ReplaceMulti(repetition, u"a", u"x"), u"x");
}

// --- RTrimMulti ------------------------------------------------------------------------------------------

TEST_F(CStringTest, RTrimMultiRemovesTrailingCharactersOfASet) {
  struct Row {
    TextView original;
    std::vector<Variant> characters;
    TextView expected;
  };
  const Row rows[] = {
      {u"   mid   ", {u""}, u"   mid   "},
      {u"   mid   ", {u" "}, u"   mid"},
      {u"   midx", {u"x"}, u"   mid"},
      {u"   midxyz", {u"y", u"z"}, u"   midx"},
      {u"   midxyz", {u"z", u"y"}, u"   midx"},
      {u"xxx", {u"x"}, u""},
      {u"xX", {u"x"}, u"xX"},
      {u"abab", {u"ab", u"bab"}, u"abab"},
      {u"abc", {}, u"abc"},
      {u"", {u"x"}, u""},
      {u"", {}, u""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(strings.RTrimMulti(row.original, BoundedArray<Variant>(row.characters)), row.expected);
  }
}

TEST_F(CStringTest, RTrimMultiReadsTheBoundsOfTheSet) {
  EXPECT_EQ(strings.RTrimMulti(u"midxy", BoundedArray<Variant>({Variant(u"x"), Variant(u"y")}, -7)), u"mid");
}

TEST_F(CStringTest, DeliberateRTrimMultiRemovesTwoCharactersWhenTwoEntriesEqualTheLast) {
  EXPECT_EQ(strings.RTrimMulti(u"abcx", BoundedArray<Variant>({Variant(u"x"), Variant(u"x")})), u"ab");
  EXPECT_EQ(RaisedNumber([&] {
              strings.RTrimMulti(u"x", BoundedArray<Variant>({Variant(u"x"), Variant(u"x")}));
            }),
            kInvalidProcedureCall);
}

TEST_F(CStringTest, RTrimMultiOfTheEmptyTextWithAnEmptyEntryIsAnError) {
  for (const Variant& empty : {Variant(u""), Variant()}) {
    const BoundedArray<Variant> set({empty});
    const BoundedArray<Variant> setWithBlank({Variant(u" "), empty});
    EXPECT_EQ(RaisedNumber([&] { strings.RTrimMulti(u"", set); }), kInvalidProcedureCall);
    EXPECT_EQ(RaisedNumber([&] { strings.RTrimMulti(u"  ", setWithBlank); }), kInvalidProcedureCall);
    EXPECT_EQ(strings.RTrimMulti(u"x  ", setWithBlank), u"x");
  }
}

TEST_F(CStringTest, RTrimMultiEntriesThatAreNumbersEqualNoText) {
  const std::vector<Variant> numbers{1, 1.0, true, false};
  EXPECT_EQ(strings.RTrimMulti(u"True1", BoundedArray<Variant>(numbers)), u"True1");
  EXPECT_EQ(strings.RTrimMulti(u"", BoundedArray<Variant>(numbers)), u"");
}

TEST_F(CStringTest, RTrimMultiEntriesThatCannotBeComparedAreErrors) {
  EXPECT_EQ(RaisedNumber([&] { strings.RTrimMulti(u"a", BoundedArray<Variant>({Variant(Missing{})})); }),
            kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { strings.RTrimMulti(u"a", BoundedArray<Variant>({Variants({u"a"})})); }),
            kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { strings.RTrimMulti(u"a", BoundedArray<Variant>({ObjectReference()})); }),
            kTypeMismatch);
  EXPECT_EQ(RaisedNumber([&] { strings.RTrimMulti(u"a", BoundedArray<Variant>()); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] {
              strings.RTrimMulti(u"a", BoundedArray<Variant>(Bounds{0, 1}, Bounds{0, 1}));
            }),
            kSubscriptOutOfRange);
}

// --- Split5 ----------------------------------------------------------------------------------------------

TEST_F(CStringTest, Split5SplitsAtTheDelimiter) {
  EXPECT_EQ(strings.Split5(u"x y z"), Texts({u"x", u"y", u"z"}));
  EXPECT_EQ(strings.Split5(u"x"), Texts({u"x"}));
  EXPECT_EQ(strings.Split5(u"a, b,c", u", "), Texts({u"a", u"b,c"}));
  EXPECT_EQ(strings.Split5(u"aaa", u"aa"), Texts({u"", u"a"}));
  EXPECT_EQ(strings.Split5(u"  a  b "), Texts({u"", u"", u"a", u"", u"b"}));
}

TEST_F(CStringTest, DeliberateSplit5HasNoEmptyElementAfterADelimiterAtTheEnd) {
  EXPECT_EQ(strings.Split5(u"a,", u","), Texts({u"a"}));
  EXPECT_EQ(strings.Split5(u",", u","), Texts({u""}));
  EXPECT_EQ(strings.Split5(u",a", u","), Texts({u"", u"a"}));
}

TEST_F(CStringTest, DeliberateSplit5DropsWhatIsBeyondTheLimit) {
  EXPECT_EQ(strings.Split5(u"x y z", u" ", 2), Texts({u"x", u"y"}));
  EXPECT_EQ(strings.Split5(u"x y z", u" ", 1), Texts({u"x"}));
  EXPECT_EQ(strings.Split5(u"x y z", u" ", 3), Texts({u"x", u"y", u"z"}));
  EXPECT_EQ(strings.Split5(u"x y z", u" ", std::numeric_limits<std::int32_t>::max()),
            Texts({u"x", u"y", u"z"}));
  EXPECT_EQ(strings.Split5(u"x y z", u" ", -2), Texts({u"x", u"y", u"z"}));
}

TEST_F(CStringTest, Split5LeavesOutEmptyElements) {
  EXPECT_EQ(strings.Split5(u"  a  b ", u" ", -1, kCompareExact, true), Texts({u"a", u"b"}));
  EXPECT_EQ(strings.Split5(u"  a  b  c", u" ", 2, kCompareExact, true), Texts({u"a", u"b"}));
}

TEST_F(CStringTest, Split5OfTheEmptyTextIsOneEmptyElement) {
  EXPECT_EQ(strings.Split5(u""), Texts({u""}));
  EXPECT_EQ(strings.Split5(u"", u"", 0, 7, true), Texts({u""}));
}

TEST_F(CStringTest, DeliberateSplit5WithoutElementsIsOutOfRange) {
  EXPECT_EQ(RaisedNumber([&] { strings.Split5(u"a", u" ", 0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { strings.Split5(u"a", u"", 0, 7, true); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { strings.Split5(u"   ", u" ", -1, kCompareExact, true); }),
            kSubscriptOutOfRange);
}

TEST_F(CStringTest, Split5ComparesIgnoringCaseWhenAskedTo) {
  EXPECT_EQ(strings.Split5(u"axbXc", u"x", -1, kCompareIgnoringCase), Texts({u"a", u"b", u"c"}));
  EXPECT_EQ(strings.Split5(u"axbXc", u"x"), Texts({u"a", u"bXc"}));
  EXPECT_EQ(strings.Split5(u"aÉeéX", u"éE", -1, 1), Texts({u"a", u"éX"}));
  EXPECT_EQ(strings.Split5(u"XxaxxbX", u"x", 2, 1, true), Texts({u"a", u"b"}));
  EXPECT_EQ(strings.Split5(u"a\u03C9b\u03A9c", u"\u03A9", -1, 1), Texts({u"a\u03C9b", u"c"}))
      << "beyond the code page letters have no other case";
}

TEST_F(CStringTest, Split5WithAnotherCompareMethodIsAnError) {
  for (const std::int32_t method : {2, -1, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(RaisedNumber([&] { strings.Split5(u"a b", u" ", -1, method); }), kInvalidProcedureCall);
  }
}

TEST_F(CStringTest, DeliberateSplit5AtTheEmptyDelimiterFillsUpToTheLimit) {
  EXPECT_EQ(strings.Split5(u"abc", u"", 3), Texts({u"", u"", u""}));
  EXPECT_EQ(RaisedNumber([&] { strings.Split5(u"abc", u""); }), kInvalidProcedureCall);
  EXPECT_EQ(RaisedNumber([&] { strings.Split5(u"abc", u"", 3, kCompareExact, true); }),
            kInvalidProcedureCall);
}

TEST_F(CStringTest, SplitsFollowTheStepsForRandomTextsOfEveryLength) {
  Random random(8);
  for (int round = 0; round < 20000; ++round) {
    Text text(1 + random.Below(300), u'\0');
    const unsigned letters = 1 + random.Below(5);
    for (char16_t& unit : text) unit = static_cast<char16_t>(u'a' + random.Below(letters));
    const Text delimiter = TextOfTwoLetters(random.Below(16), 1 + random.Below(4));
    const auto limit = static_cast<std::int32_t>(random.Below(20)) - 10;
    const bool skipEmpty = random.Below(2) == 0;
    const std::vector<Text> expected = SplitStepByStep(text, delimiter, limit, skipEmpty);
    if (expected.empty()) {
      ASSERT_EQ(RaisedNumber([&] { strings.Split5(text, delimiter, limit, 0, skipEmpty); }),
                kSubscriptOutOfRange);
    } else {
      ASSERT_EQ(strings.Split5(text, delimiter, limit, 0, skipEmpty), Texts(expected));
      ASSERT_EQ(strings.Split5(text, UpperCase(delimiter), limit, 1, skipEmpty), Texts(expected));
    }

    std::vector<Text> everywhere = SplitStepByStep(text, delimiter, -1, false);
    std::size_t units = everywhere.size() * delimiter.size();
    for (const Text& element : everywhere) units += element.size();
    if (units == text.size()) everywhere.emplace_back();  // the last element is followed by a delimiter
    ASSERT_EQ(strings.SplitMulti(text, delimiter), Texts(everywhere));
    std::erase(everywhere, Text());
    const Variant expectedVariants =
        everywhere.empty() ? Variant(BoundedArray<Variant>(Bounds{0, 100}))
                           : Variants(std::vector<Variant>(everywhere.begin(), everywhere.end()));
    ASSERT_EQ(strings.SplitMulti(text, delimiter, true), expectedVariants);
  }
}

// --- SplitMulti ------------------------------------------------------------------------------------------

TEST_F(CStringTest, SplitMultiSplitsEverywhere) {
  EXPECT_EQ(strings.SplitMulti(u"1 2 3 4", u"", false), Texts({u"1 2 3 4"}));
  EXPECT_EQ(strings.SplitMulti(u"1 2 3 4", u" ", false), Texts({u"1", u"2", u"3", u"4"}));
  EXPECT_EQ(strings.SplitMulti(u"1 2  3 4"), Texts({u"1", u"2", u"", u"3", u"4"}));
  EXPECT_EQ(strings.SplitMulti(u",a,", u","), Texts({u"", u"a", u""}));
  EXPECT_EQ(strings.SplitMulti(u",", u","), Texts({u"", u""}));
  EXPECT_EQ(strings.SplitMulti(u"a, b,c", u", "), Texts({u"a", u"b,c"}));
  EXPECT_EQ(strings.SplitMulti(u"axbXc", u"x"), Texts({u"a", u"bXc"}));
}

TEST_F(CStringTest, SplitMultiOfTheEmptyTextIsTheArrayWithoutElements) {
  for (const TextView delimiter : {u" ", u""}) {
    const Variant elements = strings.SplitMulti(u"", delimiter);
    EXPECT_EQ(elements, Variant(BoundedArray<Text>::Empty()));
    EXPECT_EQ(ArrayBounds(elements), (Bounds{0, -1}));
  }
}

TEST_F(CStringTest, SplitMultiLeavesOutEmptyElements) {
  EXPECT_EQ(strings.SplitMulti(u"1 2  3 4", u" ", true), Variants({u"1", u"2", u"3", u"4"}));
  EXPECT_EQ(strings.SplitMulti(u"  a ", u" ", true), Variants({u"a"}));
  EXPECT_EQ(strings.SplitMulti(u"a b", u"", true), Variants({u"a b"}));
}

TEST_F(CStringTest, SplitMultiWithMoreThanAHundredElementsKeepsThemAll) {
  for (const std::int32_t count : {100, 101, 102, 201, 202, 1000}) {
    Text text;
    for (std::int32_t i = 0; i < count; ++i) text += u" x";
    const Variant elements = strings.SplitMulti(text, u" ", true);
    EXPECT_EQ(ArrayBounds(elements), (Bounds{0, count - 1}));
    EXPECT_EQ(ArrayElement(elements, count - 1), Variant(u"x"));
  }
}

TEST_F(CStringTest, DeliberateSplitMultiWithNothingLeftReturnsAHundredAndOneEmpties) {
  const Variant empties = BoundedArray<Variant>(Bounds{0, 100});
  EXPECT_EQ(strings.SplitMulti(u"   ", u" ", true), empties);
  EXPECT_EQ(strings.SplitMulti(u"", u" ", true), empties);
  EXPECT_EQ(strings.SplitMulti(u"", u"", true), empties);
}

// --- Units of every kind ---------------------------------------------------------------------------------

TEST_F(CStringTest, ANulIsAnOrdinaryUnit) {
  using namespace std::string_view_literals;
  constexpr TextView kNul = u"\0"sv;
  EXPECT_EQ(strings.MidBracketed(u"a\0b\0c"sv, kNul, kNul), u"b");
  EXPECT_EQ(strings.MidBracketed(u"a<b\0c>d"sv, u"<", u">"), u"b\0c"sv);
  EXPECT_EQ(strings.ReplaceMulti(u"a\0\0b\0"sv, kNul, u"-"), u"a-b-");
  EXPECT_EQ(strings.ReplaceMulti(u"a--b", u"-", kNul), u"a\0b"sv);
  EXPECT_EQ(strings.RTrimMulti(u"a\0\0"sv, BoundedArray<Variant>({Variant(kNul)})), u"a");
  EXPECT_EQ(strings.RTrimMulti(u"a\0"sv, BoundedArray<Variant>({Variant(u"a")})), u"a\0"sv);
  EXPECT_EQ(strings.Split5(u"a\0b"sv, kNul), Texts({u"a", u"b"}));
  EXPECT_EQ(strings.Split5(u"aX\0b"sv, u"x\0"sv, -1, kCompareIgnoringCase), Texts({u"a", u"b"}));
  EXPECT_EQ(strings.SplitMulti(kNul, kNul), Texts({u"", u""}));
  EXPECT_EQ(strings.SplitMulti(u"a\0\0b"sv, kNul, true), Variants({u"a", u"b"}));
}

TEST_F(CStringTest, TheTwoUnitsOfACharacterAreTakenOneByOne) {
  constexpr TextView kHigh = u"\xD83D";
  constexpr TextView kLow = u"\xDE00";
  const Text character = Text(kHigh) + Text(kLow);
  EXPECT_EQ(strings.MidBracketed(u"a" + character + u"b" + character, character, kHigh), Text(kLow) + u"b");
  EXPECT_EQ(strings.ReplaceMulti(character, kLow, u"-"), Text(kHigh) + u"-");
  EXPECT_EQ(strings.RTrimMulti(character, BoundedArray<Variant>({Variant(character)})), character);
  EXPECT_EQ(strings.RTrimMulti(character, BoundedArray<Variant>({Variant(kLow)})), kHigh);
  EXPECT_EQ(strings.Split5(u"a" + character + u"b", kHigh), Texts({u"a", Text(kLow) + u"b"}));
  EXPECT_EQ(strings.SplitMulti(character, kLow), Texts({Text(kHigh), u""}));
}

// --- Self-test -------------------------------------------------------------------------------------------

TEST_F(CStringTest, SelfTestPassesAndAppendsNothing) {
  FailedTests failedTests{u"earlier"};
  EXPECT_EQ(strings.SelfTest_Main(failedTests), Variant());
  EXPECT_EQ(failedTests, FailedTests{u"earlier"});
}

/// Gets every answer wrong.
struct WrongStrings {
  Variant CommandLineArgumentsParse(bool, TextView) const { return Variants({u"wrong", u"wrong"}); }
  Text MidBracketed(TextView, TextView, TextView) const { return u"wrong"; }
  Text ReplaceMulti(TextView, TextView, TextView) const { return u"wrong"; }
  Text RTrimMulti(TextView, const BoundedArray<Variant>&) const { return u"wrong"; }
  Variant SplitMulti(TextView, TextView, bool) const { return Texts({u"wrong", u"wrong", u"wrong"}); }
};

TEST(CStringSelfTest, DeliberateTheCheckOfMidBracketedFailsUnderAnotherName) {
  FailedTests failedTests;
  RunStringChecks(WrongStrings(), failedTests);
  EXPECT_EQ(failedTests,
            (FailedTests{u"SelfTest_CommandLineArgumentsParse", u"SelfTest_CommandLineArgumentsParse",
                         u"SelfTest_ReplaceMulti", u"SelfTest_SplitMulti", u"SelfTest_RTrimMulti"}));
}

/// Right answers but for one, which is wrong in one place: the text, an element or the number of elements.
class WrongOnce {
 public:
  enum Fault { kElement, kCount };

  WrongOnce(int call, Fault fault) : call_(call), fault_(fault) {}

  Variant CommandLineArgumentsParse(bool isTestMode, TextView line) const {
    return Spoilt(strings_.CommandLineArgumentsParse(isTestMode, line));
  }
  Variant SplitMulti(TextView text, TextView delimiter, bool treatMultipleAsOne) const {
    return Spoilt(strings_.SplitMulti(text, delimiter, treatMultipleAsOne));
  }
  Text MidBracketed(TextView text, TextView open, TextView close) const {
    return Spoilt(strings_.MidBracketed(text, open, close));
  }
  Text ReplaceMulti(TextView original, TextView find, TextView replacement) const {
    return Spoilt(strings_.ReplaceMulti(original, find, replacement));
  }
  Text RTrimMulti(TextView original, const BoundedArray<Variant>& characters) const {
    return Spoilt(strings_.RTrimMulti(original, characters));
  }

  int Calls() const { return calls_; }

 private:
  bool IsTheOne() const { return ++calls_ == call_; }

  Text Spoilt(Text text) const { return IsTheOne() ? text + u"x" : text; }

  Variant Spoilt(const Variant& list) const {
    if (!IsTheOne()) return list;
    std::vector<Variant> elements;
    const std::int32_t upper = ArrayBounds(list).upper;
    for (std::int32_t i = 0; i <= upper; ++i) elements.push_back(ArrayElement(list, i));
    if (fault_ == kCount) {
      elements.push_back(Variant());
    } else {
      for (Variant& element : elements) element = u"wrong";
    }
    return Variants(std::move(elements));
  }

  test::FakePlatform fake_;
  CString strings_{fake_.platform};
  int call_;
  Fault fault_;
  mutable int calls_ = 0;
};

TEST(CStringSelfTest, EveryWrongAnswerFailsItsCheckAndNoOther) {
  struct Row {
    TextView name;
    int calls;
    bool looksAtElements;
    bool looksAtCount;  // of lists
  };
  const Row rows[] = {{u"SelfTest_CommandLineArgumentsParse", 1, false, true},
                      {u"SelfTest_CommandLineArgumentsParse", 2, true, false},
                      {u"SelfTest_CommandLineArgumentsParse", 2, true, true},
                      {u"SelfTest_ReplaceMulti", 4, true, true},
                      {u"SelfTest_SplitMulti", 4, true, true},
                      {u"SelfTest_RTrimMulti", 5, true, true}};
  int call = 0;
  for (const Row& row : rows) {
    for (int i = 0; i < row.calls; ++i) {
      ++call;
      for (const WrongOnce::Fault fault : {WrongOnce::kElement, WrongOnce::kCount}) {
        const bool isNoticed = fault == WrongOnce::kElement ? row.looksAtElements : row.looksAtCount;
        FailedTests failedTests;
        RunStringChecks(WrongOnce(call, fault), failedTests);
        EXPECT_EQ(failedTests, isNoticed ? FailedTests{Text(row.name)} : FailedTests()) << call << fault;
      }
    }
  }
  const WrongOnce right(0, WrongOnce::kElement);
  FailedTests failedTests;
  RunStringChecks(right, failedTests);
  EXPECT_EQ(failedTests, FailedTests());
  EXPECT_EQ(right.Calls(), call);
}

TEST(CStringSelfTest, ACheckThatRaisesFails) {
  struct RaisingStrings : CString {
    using CString::CString;
    Variant CommandLineArgumentsParse(bool, TextView) const { throw LibraryError(kOutOfMemory); }
  };
  FailedTests failedTests;
  RunStringChecks(RaisingStrings(), failedTests);
  EXPECT_EQ(failedTests, FailedTests{u"SelfTest_CommandLineArgumentsParse"});
}

}  // namespace
}  // namespace vorquill21
