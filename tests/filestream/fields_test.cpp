#include <limits>

#include "tests/filestream/file_stream_fixture.hpp"

namespace vorquill21 {
namespace {

using test::ArrayOf;
using test::ErrorOf;
using test::NoVersions;

class CFileStreamFieldsTest : public test::WithEachSeparator {
 protected:
  /// The document without the two records that GetContents adds to an unnamed document.
  Text Records() {
    const Text added = Text(u"[FILEVERSION]\t\r\n[DEC SEP]\t") + Separator() + u"\r\n";
    const Text contents = stream.GetContents();
    EXPECT_TRUE(contents.ends_with(added)) << ToUtf8(contents);
    const Text records = contents.substr(0, contents.size() - added.size());
    stream.SetContents(records);
    return records;
  }
};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamFieldsTest);

// --- Adding ----------------------------------------------------------------------------------------------

TEST_P(CFileStreamFieldsTest, RecordHoldsNameAndValuesWithTabsAndEndsInCrLf) {
  stream.AddField(u"ONE", u"value");
  stream.AddField(u" two, [odd] ", ArrayOf({u"a", u"", u"c"}));
  stream.AddField(u"", BoundedArray<Text>(std::vector<Text>{u"x", u"y"}));
  EXPECT_EQ(Records(), u"[ONE]\tvalue\r\n[ two, [odd] ]\ta\t\tc\r\n[]\tx\ty\r\n");
}

TEST_P(CFileStreamFieldsTest, ValuesOfEveryKindAreWrittenInTheUsersNotation) {
  const struct {
    Variant value;
    Text expected;
  } rows[] = {
      {Variant(), u""},
      {true, u"True"},
      {false, u"False"},
      {-12, u"-12"},
      {1.5, Localised(u"1.5")},
      {-0.0, u"0"},
      {1e-50, u"1E-50"},
      {1234567890123456.0, Localised(u"1.23456789012346E+15")},
      {1.0 / 3.0, Localised(u"0.333333333333333")},
      {u"as it is ", u"as it is "},
      {u"1.5", u"1.5"},
  };
  for (const auto& row : rows) {
    stream.AddField(u"F", row.value);
    EXPECT_EQ(Records(), Text(u"[F]\t") + row.expected + u"\r\n");
  }
}

TEST_P(CFileStreamFieldsTest, ArraysOfNumbersAreWrittenInTheUsersNotation) {
  stream.AddField(u"D", BoundedArray<double>(std::vector{1.5, 0.0, -2e300}));
  EXPECT_EQ(Records(), Localised(u"[D]\t1.5\t0\t-2E+300\r\n"));
}

TEST_P(CFileStreamFieldsTest, NamesAndValuesMayHoldAnyUnits) {
  using namespace std::string_view_literals;
  const TextView texts[] = {u"\0"sv,   u"a\0b"sv,     u"\xD83D", u"\xDE00\xD83D",
                            u"\u4E2D", u"\"quoted\"", u"a\u00A0"};
  for (const TextView name : texts) {
    for (const TextView value : texts) {
      stream.SetContents(u"");
      stream.AddField(name, value);
      EXPECT_EQ(Records(), Text(u"[").append(name).append(u"]\t").append(value).append(u"\r\n"));
      EXPECT_EQ(stream.GetFieldString(name), Variant(value));
      for (const TextView other : texts) EXPECT_EQ(stream.FieldExists(other), other == name);
      EXPECT_TRUE(stream.RemoveField(name));
      EXPECT_EQ(Records(), u"");
    }
  }
}

TEST_P(CFileStreamFieldsTest, NamesAndValuesMayHaveAnyLength) {
  for (std::size_t length : {2000u, 2037u, 2038u, 2039u, 2040u, 2041u, 2042u, 2043u, 2044u, 2045u, 2046u,
                             2047u, 2048u, 2049u, 2050u, 4096u, 1'000'000u}) {
    const Text name(length, u'n');
    const Text value(length, u'v');
    stream.SetContents(u"");
    stream.AddField(name, ArrayOf({1.5, value, 2, value}));
    EXPECT_EQ(Records(), u"[" + name + u"]\t" + TextOf(1.5) + u"\t" + value + u"\t2\t" + value + u"\r\n");
    EXPECT_EQ(stream.GetFieldString(name), Variant(ArrayOf({TextOf(1.5), value, u"2", value})));
    EXPECT_FALSE(stream.FieldExists(name + u"n"));
    EXPECT_TRUE(stream.RemoveField(name));
    EXPECT_EQ(Records(), u"");
  }
}

TEST_P(CFileStreamFieldsTest, EmptyArrayAddsARecordWithoutValues) {
  stream.AddField(u"F", BoundedArray<Variant>::Empty());
  EXPECT_EQ(Records(), u"[F]\r\n");
  stream.AddField(u"G", BoundedArray<double>(Bounds{-3, -1}));
  EXPECT_EQ(Records(), u"[F]\r\n[G]\r\n");
}

TEST_P(CFileStreamFieldsTest, DeliberateElementsBeforeIndexZeroAreLeftOut) {
  stream.AddField(u"F", ArrayOf({u"before", u"zero", u"one"}, -1));
  EXPECT_EQ(Records(), u"[F]\tzero\tone\r\n");
}

TEST_P(CFileStreamFieldsTest, AddingAnExistingFieldMovesItToTheEnd) {
  stream.AddField(u"A", u"1");
  stream.AddField(u"B", u"2");
  stream.AddField(u"A", u"3");
  EXPECT_EQ(Records(), u"[B]\t2\r\n[A]\t3\r\n");
}

TEST_P(CFileStreamFieldsTest, ValueThatCannotBeWrittenLeavesTheOldRecordRemoved) {
  const Variant refused[] = {
      ArrayOf({u"first"}, 1),
      ArrayOf({u"first", Missing{}}),
      ArrayOf({Variant(ArrayOf({u"nested"}))}),
      ArrayOf({ObjectReference()}),
      BoundedArray<double>(Bounds{0, 1}, Bounds{0, 1}),
      BoundedArray<Variant>(),
      Missing{},
      ObjectReference(),
  };
  for (const Variant& value : refused) {
    stream.SetContents(u"[A]\t1\r\n[F]\told\r\n[B]\t2\r\n");
    stream.AddField(u"F", value);
    ExpectMessages({u"An error occurred while adding field: F to the filestream"});
    EXPECT_EQ(Records(), u"[A]\t1\r\n[B]\t2\r\n");
  }
}

TEST_P(CFileStreamFieldsTest, DeliberateNothingChecksValuesForCharactersOfTheFormat) {
  stream.AddField(u"F", u"a\tb");
  EXPECT_EQ(stream.GetFieldString(u"F"), Variant(ArrayOf({u"a", u"b"})));
  stream.AddField(u"G", u"see [AB] here");
  EXPECT_EQ(stream.GetFieldString(u"G"), Variant(u"see"));
  EXPECT_EQ(stream.GetFieldString(u"AB"), Variant(u" here"));
}

// --- Reading texts ---------------------------------------------------------------------------------------

TEST_P(CFileStreamFieldsTest, DeliberateFieldsAreFoundAnywhereTheFirstOneWinning) {
  stream.SetContents(u"heading\r\n\r\n[A]\tsee [B] below\r\n[B]\tlater\r\n[A]\tlater\r\n");
  EXPECT_EQ(stream.GetFieldString(u"A"), Variant(u"see"));
  EXPECT_EQ(stream.GetFieldString(u"B"), Variant(u" below"));
}

TEST_P(CFileStreamFieldsTest, DeliberateNamesMatchExactly) {
  stream.SetContents(u"[AB]\t1\r\n[name]\t2\r\n");
  for (const TextView name : {u"A", u"B", u"NAME", u"name ", u"ab"}) {
    EXPECT_FALSE(stream.FieldExists(name));
    EXPECT_EQ(stream.GetFieldString(name), Variant(u""));
  }
}

TEST_P(CFileStreamFieldsTest, DeliberateSurroundingsOfTheValuesAreCut) {
  const struct {
    TextView document;
    Variant expected;
  } rows[] = {
      {u"[F]\tvalue\r\n", u"value"},
      {u"[F]\tvalue", u"value"},
      {u"[F]value\r\n[G]", u"value"},
      {u"[F]\t\t\t value \t \r\n\r\n\n\r[G]", u" value"},
      {u"[F] \tvalue\n", ArrayOf({u" ", u"value"})},
      {u"[F]\r\nvalue\r\n", u"\r\nvalue"},
      {u"[F]\t\r\n", u""},
      {u"[F]\r\n", u""},
      {u"[F]", u""},
      {u"[F]\t", u""},
      {u"[F] \t \r\n", u""},
      {u"[F][G]\t1\r\n[H]", ArrayOf({u"[G]", u"1"})},
      {u"[F]\t[G]", u""},
  };
  for (const auto& row : rows) {
    stream.SetContents(row.document);
    EXPECT_EQ(stream.GetFieldString(u"F"), row.expected) << ToUtf8(row.document);
    EXPECT_TRUE(stream.FieldExists(u"F"));
  }
}

TEST_P(CFileStreamFieldsTest, OneValueIsATextAndSeveralAreAnArray) {
  stream.AddField(u"ONE", u"7");
  stream.AddField(u"TWO", ArrayOf({u"7", u"8"}));
  EXPECT_EQ(stream.GetFieldString(u"ONE"), Variant(u"7"));
  EXPECT_EQ(stream.GetFieldString(u"TWO"), Variant(ArrayOf({u"7", u"8"})));
}

TEST_P(CFileStreamFieldsTest, FieldWithoutValueGivesTheDefaultAsItIs) {
  stream.SetContents(u"[EMPTY]\t\r\n");
  const Variant defaults[] = {Variant(),
                              u"text",
                              1.5,
                              7,
                              true,
                              ArrayOf({1, u"a", Variant()}, 1),
                              BoundedArray<double>(std::vector{1.5, 2.5}),
                              BoundedArray<Variant>()};
  for (const Variant& byDefault : defaults) {
    EXPECT_EQ(stream.GetFieldString(u"ABSENT", byDefault), byDefault);
    EXPECT_EQ(stream.GetFieldString(u"EMPTY", byDefault), byDefault);
  }
  EXPECT_EQ(stream.GetFieldString(u"ABSENT"), Variant(u""));
  EXPECT_EQ(stream.GetFieldString(u"EMPTY"), Variant(u""));
  ExpectMessages({});
}

TEST_P(CFileStreamFieldsTest, DefaultArrayFillsTheGapsOfSeveralValues) {
  stream.AddField(u"F", ArrayOf({u"1", u"", u"3"}));
  EXPECT_EQ(stream.GetFieldString(u"F", ArrayOf({u"a", u"b", u"c"})), Variant(ArrayOf({u"1", u"b", u"3"})));
  EXPECT_EQ(stream.GetFieldString(u"F"), Variant(ArrayOf({u"1", u"", u"3"})));
}

TEST_P(CFileStreamFieldsTest, DefaultThatFillsAGapKeepsItsKind) {
  stream.AddField(u"F", ArrayOf({u"1", u"", u"3"}));
  EXPECT_EQ(stream.GetFieldString(u"F", ArrayOf({1, 2.5, 3, true, Variant()})),
            Variant(ArrayOf({u"1", 2.5, u"3", true, Variant()})));
  EXPECT_EQ(stream.GetFieldString(u"F", BoundedArray<double>(std::vector{1.0, 2.5})),
            Variant(ArrayOf({u"1", 2.5, u"3"})));
  EXPECT_EQ(stream.GetFieldString(u"F", BoundedArray<Text>(std::vector<Text>{u"a", u"b", u"c", u"d"}, -1)),
            Variant(ArrayOf({u"1", u"c", u"3"})));
}

TEST_P(CFileStreamFieldsTest, DeliberateScalarDefaultFillsNoGap) {
  stream.AddField(u"F", ArrayOf({u"1", u"", u"3"}));
  EXPECT_EQ(stream.GetFieldString(u"F", u"default"), Variant(ArrayOf({u"1", u"", u"3"})));
}

TEST_P(CFileStreamFieldsTest, DeliberateArrayDefaultMakesNoArrayOfASingleValue) {
  stream.AddField(u"F", 7);
  EXPECT_EQ(stream.GetFieldString(u"F", ArrayOf({1, 2, 3})), Variant(u"7"));
  EXPECT_EQ(stream.GetFieldNumber(u"F", ArrayOf({1, 2, 3})), Variant(7.0));
}

TEST_P(CFileStreamFieldsTest, DeliberateDefaultWithoutElementForAGapIsReportedWithItsIndex) {
  const struct {
    TextView values;
    Variant defaults;
    TextView index;
  } rows[] = {
      {u"1\t\t3", ArrayOf({u"a"}), u" 1"},
      {u"1\t2\t\t4", ArrayOf({u"a", u"b"}), u" 2"},
      {u"1\t2", ArrayOf({u"five"}, 5), u" 2"},
      {u"1\t2", ArrayOf({u"far away"}, std::numeric_limits<std::int32_t>::max()), u" 2"},
      {u"1\t\t3", BoundedArray<double>(Bounds{0, 3}, Bounds{0, 3}), u" 1"},
      {u"1\t2", BoundedArray<Variant>(), u" 0"},
  };
  for (const auto& row : rows) {
    stream.AddField(u"F", row.values);
    const Text message = Text(u"An error occurred while getting sub field: ").append(row.index);
    EXPECT_TRUE(stream.GetFieldString(u"F", row.defaults).IsEmpty());
    ExpectMessages({message});
    EXPECT_TRUE(stream.GetFieldNumber(u"F", row.defaults).IsEmpty());
    ExpectMessages({message});
  }
}

TEST_P(CFileStreamFieldsTest, DefaultMayBeShorterOrHoldNoneWhereThereIsNoGap) {
  stream.AddField(u"F", u"1\t2\t3");
  EXPECT_EQ(stream.GetFieldString(u"F", ArrayOf({u"a"})), Variant(ArrayOf({u"1", u"2", u"3"})));
  EXPECT_EQ(stream.GetFieldString(u"F", ArrayOf({u"a"}, 2)), Variant(ArrayOf({u"1", u"2", u"3"})));
  EXPECT_EQ(stream.GetFieldString(u"F", ArrayOf({u"a", u"b"}, 2)),
            Variant(ArrayOf({u"1", u"2", u"3", u"b"})));
  EXPECT_EQ(stream.GetFieldString(u"F", BoundedArray<Variant>::Empty()),
            Variant(ArrayOf({u"1", u"2", u"3"})));
  ExpectMessages({});
}

// --- Reading numbers -------------------------------------------------------------------------------------

TEST_P(CFileStreamFieldsTest, NumbersComeBackAsTheyWereAdded) {
  stream.Initialise(u"", NoVersions());
  for (const double number :
       {0.0, 1.0, -1.5, 12345.6, 1e-50, -2e300, 0.123456789012345, 4503599627370497.0}) {
    stream.AddField(u"F", number);
    const double expected = *TextToNumber(TextOf(number), GetParam());
    EXPECT_EQ(stream.GetFieldNumber(u"F"), Variant(expected));
  }
  stream.AddField(u"F", BoundedArray<double>(std::vector{1.5, 0.0, -2.25}));
  EXPECT_EQ(stream.GetFieldNumber(u"F"), Variant(ArrayOf({1.5, 0.0, -2.25})));
}

TEST_P(CFileStreamFieldsTest, DeliberateWhatIsNoNumberReadsAsZero) {
  stream.Initialise(u"", NoVersions());
  for (const TextView words : {u"", u"abc", u"1x", u"1 2", u"--1", u".", u",", u"1.5.", u"1,5,", u"inf",
                               u"nan", u"1E", u"&H10", u"1E999", u"True"}) {
    stream.AddField(u"F", words);
    EXPECT_EQ(stream.GetFieldNumber(u"F"), Variant(0.0)) << ToUtf8(words);
  }
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT"), Variant(0.0));
  stream.AddField(u"F", u"1\tx\t3");
  EXPECT_EQ(stream.GetFieldNumber(u"F"), Variant(ArrayOf({1.0, 0.0, 3.0})));
  ExpectMessages({});
}

TEST_P(CFileStreamFieldsTest, WhiteSpaceAroundNumbersIsAllowed) {
  stream.SetContents(u"[A] \r\n 12 \r\n[B] \t 1 \t\n2\r\n");
  EXPECT_EQ(stream.GetFieldNumber(u"A"), Variant(12.0));
  EXPECT_EQ(stream.GetFieldNumber(u"B"), Variant(ArrayOf({0.0, 1.0, 2.0})));
}

TEST_P(CFileStreamFieldsTest, DefaultsAreReadAsNumbersByTheirText) {
  stream.Initialise(u"", NoVersions());
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", 3), Variant(3.0));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", 1.5), Variant(1.5));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", 0.1 + 0.2), Variant(0.3));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", Text(TextOf(2.5))), Variant(2.5));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", u"words"), Variant(0.0));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", true), Variant(0.0));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", Variant()), Variant(0.0));
}

TEST_P(CFileStreamFieldsTest, ElementsOfADefaultArrayAreReadAsNumbersInTheirPlaces) {
  stream.Initialise(u"", NoVersions());
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", ArrayOf({1, Text(TextOf(2.5)), u"x", Variant()}, 3)),
            Variant(ArrayOf({1.0, 2.5, 0.0, 0.0}, 3)));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", BoundedArray<double>(std::vector{0.1 + 0.2, 2.0}, 1)),
            Variant(BoundedArray<double>(std::vector{0.3, 2.0}, 1)));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", BoundedArray<Text>(std::vector<Text>{u"7", u"x"}, 1)),
            Variant(ArrayOf({7.0, 0.0}, 1)));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", NoVersions()), Variant(NoVersions()));
  stream.AddField(u"F", u"1\t\t3");
  EXPECT_EQ(stream.GetFieldNumber(u"F", ArrayOf({4, 5.5, 6, 7})), Variant(ArrayOf({1.0, 5.5, 3.0, 7.0})));
}

TEST_P(CFileStreamFieldsTest, DefaultArrayMayEndAtTheLastIndexThereIs) {
  constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", ArrayOf({1, u"x"}, kLast - 1)),
            Variant(ArrayOf({1.0, 0.0}, kLast - 1)));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", BoundedArray<double>(std::vector{1.5, 2.0}, kLast - 1)),
            Variant(BoundedArray<double>(std::vector{1.5, 2.0}, kLast - 1)));
  EXPECT_EQ(stream.GetFieldNumber(u"ABSENT", BoundedArray<Text>(std::vector<Text>{u"7", u"8"}, kLast - 1)),
            Variant(ArrayOf({7.0, 8.0}, kLast - 1)));
  EXPECT_EQ(stream.GetFieldString(u"ABSENT", ArrayOf({1}, kLast)), Variant(ArrayOf({1}, kLast)));
  ExpectMessages({});
}

TEST_P(CFileStreamFieldsTest, DefaultThatIsNoScalarAndNoListRaisesItsError) {
  const auto numberOf = [&](const Variant& byDefault) {
    return ErrorOf([&] { stream.GetFieldNumber(u"ABSENT", byDefault); }).number;
  };
  EXPECT_EQ(numberOf(ObjectReference()), kTypeMismatch);
  EXPECT_EQ(numberOf(ArrayOf({Missing{}})), kTypeMismatch);
  EXPECT_EQ(numberOf(ArrayOf({Variant(ArrayOf({1}))})), kTypeMismatch);
  EXPECT_EQ(numberOf(BoundedArray<Variant>()), kSubscriptOutOfRange);
  EXPECT_EQ(numberOf(BoundedArray<double>(Bounds{0, 1}, Bounds{0, 1})), kSubscriptOutOfRange);
  ExpectMessages({});
}

// --- Existence and removal -------------------------------------------------------------------------------

TEST_P(CFileStreamFieldsTest, DeliberateFieldWithoutValueExistsAndReadsAsTheDefault) {
  stream.AddField(u"F", u"");
  EXPECT_TRUE(stream.FieldExists(u"F"));
  EXPECT_EQ(stream.GetFieldString(u"F", u"default"), Variant(u"default"));
  EXPECT_FALSE(stream.FieldExists(u"ABSENT"));
}

TEST_P(CFileStreamFieldsTest, RemovingAnAbsentFieldChangesNothing) {
  stream.SetContents(u"[AB]\t1\r\n");
  EXPECT_FALSE(stream.RemoveField(u"A"));
  EXPECT_EQ(Records(), u"[AB]\t1\r\n");
}

TEST_P(CFileStreamFieldsTest, RemovingAFieldTakesTheBlankLinesAfterIt) {
  stream.SetContents(u"head\r\n[A]\t1\r\n\r\n\r\n[B]\t2\r\n");
  EXPECT_TRUE(stream.RemoveField(u"A"));
  EXPECT_EQ(Records(), u"head\r\n[B]\t2\r\n");
  EXPECT_TRUE(stream.RemoveField(u"B"));
  EXPECT_EQ(Records(), u"head\r\n");
}

TEST_P(CFileStreamFieldsTest, DeliberateRemovingARecordThatEndsInLfTakesTheBracketAfterIt) {
  stream.SetContents(u"[A]\t1\n[B]\t2\r\n[C]\t3\r\n");
  EXPECT_TRUE(stream.RemoveField(u"A"));
  EXPECT_FALSE(stream.FieldExists(u"B"));
  EXPECT_EQ(Records(), u"B]\t2\r\n[C]\t3\r\n");
}

TEST_P(CFileStreamFieldsTest, DeliberateRemovingARecordWithoutValuesTakesTheBracketAfterIt) {
  stream.AddField(u"A", BoundedArray<Variant>::Empty());
  stream.AddField(u"B", 2);
  EXPECT_TRUE(stream.RemoveField(u"A"));
  EXPECT_EQ(Records(), u"B]\t2\r\n");
}

TEST_P(CFileStreamFieldsTest, DeliberateOnlyTheFirstPartOfAValueWithABracketIsRemoved) {
  stream.AddField(u"A", u"see [B] there");
  EXPECT_TRUE(stream.RemoveField(u"A"));
  EXPECT_EQ(Records(), u"] there\r\n");
}

TEST_P(CFileStreamFieldsTest, RemovingTheFirstOfTwoUncoversTheSecond) {
  stream.SetContents(u"[A]\t1\r\n[B]\t2\r\n[A]\t3\r\n");
  for (int i = 0; i < 30; ++i) EXPECT_EQ(stream.GetFieldString(u"A"), Variant(u"1"));
  EXPECT_TRUE(stream.RemoveField(u"A"));
  EXPECT_EQ(stream.GetFieldString(u"A"), Variant(u"3"));
  EXPECT_TRUE(stream.RemoveField(u"A"));
  EXPECT_FALSE(stream.RemoveField(u"A"));
}

}  // namespace
}  // namespace vorquill21
