#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/string_reference.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;

/// An argument list: element 0 and the arguments.
Variant List(std::vector<Variant> arguments) {
  arguments.insert(arguments.begin(), Variant());
  return BoundedArray<Variant>(std::move(arguments));
}

class CommandLineTest : public testing::Test {
 protected:
  Variant Parse(TextView line) { return strings.CommandLineArgumentsParse(true, line); }

  test::FakePlatform fake;
  CString strings{fake.platform};
};

TEST_F(CommandLineTest, BlanksSeparateArgumentsAndQuotesHoldThemTogether) {
  struct Row {
    TextView line;
    std::vector<Variant> arguments;
  };
  const Row rows[] = {
      {u"", {}},
      {u"   ", {}},
      {u"a", {u"a"}},
      {u"  a   b  ", {u"a", u"b"}},
      {u"\"/q1\" /s2 /s3 \"/q 4\"", {u"/q1", u"/s2", u"/s3", u"/q 4"}},
      {u"/s1 /s2 /s3 \"/q 4\"", {u"/s1", u"/s2", u"/s3", u"/q 4"}},
      {u"\"  a  \"", {u"  a  "}},
      {u"a\tb", {u"a\tb"}},
      {u"a\r\nb", {u"a\r\nb"}},
      {u"\u20AC \U0001F600", {u"\u20AC", u"\U0001F600"}},
  };
  for (const Row& row : rows) EXPECT_EQ(Parse(row.line), List(row.arguments)) << ToUtf8(row.line);
}

TEST_F(CommandLineTest, DeliberateCommandLineArgumentsParseBeginsWithAnEmptyElement) {
  for (const TextView line : {u"", u"a b"}) {
    EXPECT_EQ(ArrayBounds(Parse(line)).lower, 0);
    EXPECT_TRUE(ArrayElement(Parse(line), 0).IsEmpty());
  }
  EXPECT_EQ(ArrayBounds(Parse(u"")).upper, 0);
}

TEST_F(CommandLineTest, DeliberateCommandLineArgumentsParseMakesEmptyQuotesAnEmptyVariant) {
  EXPECT_EQ(Parse(u"\"\" x"), List({Variant(), u"x"}));
  EXPECT_TRUE(ArrayElement(Parse(u"\"\""), 1).IsEmpty());
  EXPECT_EQ(Parse(u"\""), List({Variant()}));
}

TEST_F(CommandLineTest, DeliberateCommandLineArgumentsParseLeavesOutQuotesWithinAnArgument) {
  EXPECT_EQ(Parse(u"ab\"c d\""), List({u"abc", u"d"}));
  EXPECT_EQ(Parse(u"a\"\"b"), List({u"ab"}));
  EXPECT_EQ(Parse(u"/f=\"a b\""), List({u"/f=a", u"b"}));
}

TEST_F(CommandLineTest, DeliberateCommandLineArgumentsParseNeedsNoBlankBehindAQuotedArgument) {
  EXPECT_EQ(Parse(u"\"a\"b"), List({u"a", u"b"}));
  EXPECT_EQ(Parse(u"\"a\"\"b\""), List({u"a", u"b"}));
}

TEST_F(CommandLineTest, AQuotedArgumentThatIsNotClosedRunsToTheEnd) {
  EXPECT_EQ(Parse(u"a \"b c  "), List({u"a", u"b c  "}));
}

TEST_F(CommandLineTest, ANulAndHalvesOfCharactersAreOrdinaryUnits) {
  using namespace std::string_view_literals;
  const Variant list = Parse(u"a\0 \"\0 \xD83D\" \xDE00"sv);
  EXPECT_EQ(list, List({u"a\0"sv, u"\0 \xD83D"sv, u"\xDE00"}));
  EXPECT_EQ(strings.CommandLineArgumentIndex(list, u"A\0"sv), 1);
  EXPECT_EQ(strings.CommandLineArgumentIndex(list, u"a"), 0);
  EXPECT_EQ(strings.CommandLineArgumentIndex(list, u"\xDE00"), 3);
}

TEST_F(CommandLineTest, OutsideTestModeTheProcessIsAsked) {
  fake.process.commandLine = u"/a \"b c\"";
  EXPECT_EQ(strings.CommandLineArgumentsParse(), List({u"/a", u"b c"}));
  EXPECT_EQ(strings.CommandLineArgumentsParse(false, u"ignored"), List({u"/a", u"b c"}));
  EXPECT_EQ(strings.CommandLineArgumentsParse(true), List({}))
      << "test mode without a line is the empty line";
}

TEST_F(CommandLineTest, AProcessThatCannotTellItsCommandLineRaises) {
  struct SilentProcess : test::FixedProcess {
    Text CommandLine() const override { throw LibraryError(kPermissionDenied); }
  };
  SilentProcess process;
  Platform platform = fake.With(process);
  EXPECT_EQ(RaisedNumber([&] { CString(platform).CommandLineArgumentsParse(); }), 70);
  EXPECT_EQ(CString(platform).CommandLineArgumentsParse(true, u"a"), List({u"a"}));
}

TEST_F(CommandLineTest, TheRealProcessHasACommandLine) {
  const Variant list = CString().CommandLineArgumentsParse();
  EXPECT_EQ(list, CString().CommandLineArgumentsParse(true, Platform::Native().GetProcess().CommandLine()));
  EXPECT_EQ(ArrayBounds(list).lower, 0);
}

TEST_F(CommandLineTest, ParsingFollowsTheStepsForAllShortLinesOfFourUnits) {
  constexpr char16_t kUnits[] = {u'a', u' ', u'"', u'\t'};
  constexpr int kLongest = 7;
  for (int length = 0; length <= kLongest; ++length) {
    for (int number = 0; number < 1 << (2 * length); ++number) {
      Text line;
      for (int i = 0; i < length; ++i) line += kUnits[(number >> (2 * i)) % 4];
      ASSERT_EQ(Parse(line), test::ParseStepByStep(line)) << ToUtf8(line);
    }
  }
}

TEST_F(CommandLineTest, LongLinesTakeLinearTime) {
  const auto secondsFor = [this](const Text& line) {
    const auto start = std::chrono::steady_clock::now();
    Parse(line);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  for (const TextView unit : {u"a", u"a ", u"\"a\"", u"\"", u" "}) {
    Text line;
    while (line.size() < 4'000'000) line += unit;
    EXPECT_LT(secondsFor(line), 10) << ToUtf8(unit);
  }
}

// --- CommandLineArgumentIndex ----------------------------------------------------------------------------

TEST_F(CommandLineTest, AnArgumentIsFoundAsAWholeIgnoringCase) {
  const Variant list = Parse(u"/s1 /S2 \"/q 4\" caf\u00E9 /s2");
  struct Row {
    TextView name;
    std::int32_t index;
  };
  for (const Row& row : {Row{u"/s1", 1}, Row{u"/s2", 2}, Row{u"/Q 4", 3}, Row{u"CAF\u00C9", 4}, Row{u"/s", 0},
                         Row{u"/q", 0}, Row{u"s1", 0}, Row{u"/s1 ", 0}}) {
    EXPECT_EQ(strings.CommandLineArgumentIndex(list, row.name), row.index) << ToUtf8(row.name);
  }
}

TEST_F(CommandLineTest, DeliberateCommandLineArgumentIndexFindsTheEmptyNameAtElementZero) {
  EXPECT_EQ(strings.CommandLineArgumentIndex(Parse(u"a \"\" b"), u""), 0);
  EXPECT_EQ(strings.CommandLineArgumentIndex(Parse(u""), u""), 0);
}

TEST_F(CommandLineTest, AnyArrayOfOneDimensionIsSearchedFromItsLowerBound) {
  using Texts = std::vector<Text>;
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<Text>(Texts{u"a", u"b"}, 5), u"B"), 6);
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<Text>(Texts{u"a", u"b"}, -1), u"a"), -1);
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<Text>(Texts{u"a"}, 5), u"x"), 0);
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<Text>::Empty(), u""), 0);
  constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<Text>(Texts{u"a", u"b"}, kLast - 1), u"b"), kLast);
  fake.locale.decimalSeparator = u',';
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<double>(std::vector{1.0, 2.5}), u"2,5"), 1);
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<Variant>({Variant(true), Variant(7)}), u"TRUE"), 0);
  EXPECT_EQ(strings.CommandLineArgumentIndex(BoundedArray<Variant>({Variant(true), Variant(7)}), u"7"), 1);
}

TEST_F(CommandLineTest, WhatIsNoArgumentListIsAnError) {
  const auto numberFor = [this](const Variant& list) {
    return RaisedNumber([&] { strings.CommandLineArgumentIndex(list, u"x"); });
  };
  EXPECT_EQ(numberFor(Variant()), 13);
  EXPECT_EQ(numberFor(u"x"), 13);
  EXPECT_EQ(numberFor(Missing{}), 13);
  EXPECT_EQ(numberFor(BoundedArray<Variant>()), 9);
  EXPECT_EQ(numberFor(BoundedArray<Variant>(Bounds{0, 1}, Bounds{0, 1})), 9);
  EXPECT_EQ(numberFor(BoundedArray<Variant>({u"a", Missing{}})), 13);
  EXPECT_EQ(numberFor(BoundedArray<Variant>({u"a", ObjectReference()})), 13);
  EXPECT_EQ(numberFor(BoundedArray<Variant>({u"a", Variant(BoundedArray<Text>::Empty())})), 13);
  EXPECT_EQ(numberFor(BoundedArray<Variant>({u"x", Missing{}})), 0) << "found before it";
}

}  // namespace
}  // namespace vorquill21
