#include <cmath>
#include <limits>
#include <random>

#include "tests/filestream/file_stream_fixture.hpp"
#include "tests/filestream/literal_table.hpp"

namespace vorquill21 {
namespace {

using test::ArrayOf;
using test::NoVersions;
using test::TableOf;

constexpr std::int32_t kFarAway = std::numeric_limits<std::int32_t>::max();

class CFileStreamTablesTest : public test::WithEachSeparator {
 protected:
  CFileStreamTablesTest() { stream.Initialise(u"", NoVersions()); }

  /// The document behind its first two records.
  Text Records() {
    const Text head = Text(u"[DEC SEP]\t") + Separator() + u"\r\n[FILEVERSION]\t\r\n";
    Text contents = stream.GetContents();
    contents.erase(contents.find(u"[FILEVERSION]\t\r\n"), head.size() - head.find(u"[FILE"));
    return contents.erase(0, head.find(u"[FILE"));
  }

  void SetTable(TextView table) {
    stream.SetContents(Text(u"[DEC SEP]\t") + Separator() + u"\r\n[T]" + Text(table));
  }
};
VORQUILL21_WITH_EACH_SEPARATOR(CFileStreamTablesTest);

const BoundedArray<double> kSmallTable = TableOf<double>({{1, 0.5, 2}, {3, 0, 4.25}});

// --- Adding two-dimensional tables -----------------------------------------------------------------------

TEST_P(CFileStreamTablesTest, TableIsABlockOfRowsBehindTheName) {
  EXPECT_TRUE(stream.AddTable2d(u"SHAPE FACTOR DATA", kSmallTable));
  EXPECT_EQ(Records(), Localised(u"[SHAPE FACTOR DATA]\t\r\n1\t0.5\t2\r\n3\t0\t4.25\r\n"));
}

TEST_P(CFileStreamTablesTest, DeliberateCellThatVanishesInSinglePrecisionIsWrittenAsZero) {
  const BoundedArray<double> table = TableOf<double>({{1e-50, -1e-46, 1e-45, -0.0, 0x1p-150, 0x1.8p-150}});
  EXPECT_TRUE(stream.AddTable2d(u"T", table));
  EXPECT_EQ(Records(), Localised(u"[T]\t\r\n0\t0\t1E-45\t0\t0\t1.05097384824361E-45\r\n"));
}

TEST_P(CFileStreamTablesTest, CellsOfEveryKindAreWrittenAsFieldsAre) {
  const Text number = TextOf(2.5);
  const BoundedArray<Variant> table = TableOf<Variant>(
      {{Variant(), true, false, 7}, {number, u" 3 ", 1.0 / 3.0, u"0"}, {u"1E-60", 0, u"007", -1.5}});
  EXPECT_TRUE(stream.AddTable2d(u"T", table));
  EXPECT_EQ(Records(),
            Localised(u"[T]\t\r\n0\tTrue\t0\t7\r\n2.5\t 3 \t0.333333333333333\t0\r\n0\t0\t007\t-1.5\r\n"));
}

TEST_P(CFileStreamTablesTest, TablesOfTextsAreTakenToo) {
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<Text>({{u"1", u"0"}, {u"1e3", u"-2"}})));
  EXPECT_EQ(Records(), u"[T]\t\r\n1\t0\r\n1e3\t-2\r\n");
}

TEST_P(CFileStreamTablesTest, WhatIsNotFiniteHasNoMagnitudeToExceed) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<double>({{infinity, -infinity, std::nan("")}})));
  EXPECT_EQ(Records(), u"[T]\t\r\nINF\t-INF\tNAN\r\n");
}

TEST_P(CFileStreamTablesTest, TableOfOneCellAndTablesOfOneRowOrColumn) {
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<double>({{7}})));
  EXPECT_EQ(stream.GetTable2d(u"T"), Variant(TableOf<double>({{7}})));
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<double>({{7, 8}})));
  EXPECT_EQ(stream.GetTable2d(u"T"), Variant(TableOf<double>({{7, 8}})));
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<double>({{7}, {8}})));
  EXPECT_EQ(stream.GetTable2d(u"T"), Variant(TableOf<double>({{7}, {8}})));
}

TEST_P(CFileStreamTablesTest, CellsBeforeIndexZeroAreLeftOut) {
  BoundedArray<double> table(Bounds{-1, 1}, Bounds{-2, 0});
  table(0, 0) = 1;
  table(1, 0) = 2;
  table(-1, -2) = 3;
  EXPECT_TRUE(stream.AddTable2d(u"T", table));
  EXPECT_EQ(Records(), u"[T]\t\r\n1\r\n2\r\n");
  EXPECT_TRUE(stream.AddTable2d(u"T", BoundedArray<double>(Bounds{-3, -1}, Bounds{0, 1})));
  EXPECT_EQ(Records(), u"[T]\t\r\n\r\n");
}

TEST_P(CFileStreamTablesTest, TableReplacesTheFieldOfItsName) {
  stream.AddField(u"T", u"old");
  stream.AddField(u"A", 1);
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<double>({{7}})));
  EXPECT_EQ(Records(), u"[A]\t1\r\n[T]\t\r\n7\r\n");
}

TEST_P(CFileStreamTablesTest, TableThatCannotBeWrittenLeavesTheDocumentAsItIs) {
  const double limit = 0x1.ffffffp+127;  // rounds to infinity in single precision
  const Variant refused[] = {
      TableOf<double>({{1, 1e39}}),
      TableOf<double>({{1}, {-limit}}),
      TableOf<Variant>({{1, u"x"}}),
      TableOf<Variant>({{1, u""}}),
      TableOf<Variant>({{1, Missing{}}}),
      TableOf<Text>({{u"1", u"1;5"}}),
      BoundedArray<double>(std::vector{1.0, 2.0}),
      BoundedArray<double>(Bounds{0, 1}, Bounds{0, 1}, Bounds{0, 1}),
      BoundedArray<double>(Bounds{1, 2}, Bounds{0, 1}),
      BoundedArray<double>(Bounds{0, 1}, Bounds{1, 2}),
      BoundedArray<Variant>(),
      Variant(),
      Missing{},
      1.5,
  };
  stream.AddField(u"T", u"old");
  for (const Variant& table : refused) {
    EXPECT_FALSE(stream.AddTable2d(u"T", table));
    ExpectMessages({u"An error occurred while adding table: T to the filestream"});
    EXPECT_EQ(Records(), u"[T]\told\r\n");
  }
  const double largest = std::nextafter(limit, 0.0);
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<double>({{largest}})));
}

TEST_P(CFileStreamTablesTest, LargeTablesComeBack) {
  BoundedArray<double> table({0, 299}, {0, 99});
  double number = 1.0;
  for (double& cell : table.Elements())
    cell = std::round(number = std::fmod(number * 1664525.0 + 1013904223.0, 4294967296.0)) / 1024.0;
  EXPECT_TRUE(stream.AddTable2d(u"T", table));
  const Variant read = stream.GetTable2d(u"T");
  ASSERT_TRUE(read.Holds<BoundedArray<double>>());
  for (std::int32_t row = 0; row < 300; ++row) {
    for (std::int32_t column = 0; column < 100; ++column) {
      const double expected = *TextToNumber(NumberToText(table(row, column), u'.'), u'.');
      ASSERT_EQ(read.As<BoundedArray<double>>()(row, column), expected);
    }
  }
}

TEST_P(CFileStreamTablesTest, LongTextsAmongTheCellsKeepTheirPlaces) {
  const Text longNumber = Text(30, u'1') + Text(5000, u' ');
  EXPECT_TRUE(stream.AddTable2d(u"T", TableOf<Variant>({{1, longNumber, 2}, {3, longNumber, 4}})));
  EXPECT_EQ(Records(), Text(u"[T]\t\r\n1\t") + longNumber + u"\t2\r\n3\t" + longNumber + u"\t4\r\n");
}

// --- Reading two-dimensional tables ----------------------------------------------------------------------

TEST_P(CFileStreamTablesTest, TableComesBackAsDoublesFromIndexZero) {
  stream.AddTable2d(u"T", kSmallTable);
  EXPECT_EQ(stream.GetTable2d(u"T"), Variant(kSmallTable));
}

TEST_P(CFileStreamTablesTest, AbsentTableIsEmptyWithoutAMessage) {
  EXPECT_TRUE(stream.GetTable2d(u"ABSENT").IsEmpty());
  ExpectMessages({});
}

TEST_P(CFileStreamTablesTest, DeliberateRowsAndCellsAreReadLeniently) {
  const struct {
    TextView record;
    BoundedArray<double> expected;
  } rows[] = {
      {u"\t\r\n1\t2\t\r\n3\t4\r\n", TableOf<double>({{1, 2}, {3, 4}})},  // trailing empty cells do not count
      {u"\t\r\n1\t\t2\t\t\r\n3\t4\t5", TableOf<double>({{1, 0, 2}, {3, 4, 5}})},
      {u"\t\r\n1\t2\r\n3\t4\t5\t6\r\n", TableOf<double>({{1, 2}, {3, 4}})},  // longer rows are cut
      {u"\t\r\n1\tx\r\n \t4\r\n", TableOf<double>({{1, 0}, {0, 4}})},
      {u"\t\r1\t2\r3\t4", TableOf<double>({{1, 2}, {3, 4}})},
      {u"\t\r\n1\n2\t3\r\n4\t5", TableOf<double>({{0, 3}, {4, 5}})},  // only CR ends a row
      {u"\tignored\t9\r\n1\t2\r\n", TableOf<double>({{1, 2}})},
      {u"ignored\r\n1\r\n2\r\n\r\n[NEXT]", TableOf<double>({{1}, {2}})},
      {u"\t\r\n\r\n1\t2\r\n", TableOf<double>({{0}, {1}})},  // a blank line holds an LF
      {u"\t\r\n 1 \t 2\r\n", TableOf<double>({{1, 2}})},
      {u"\t\r\n\t\t3\r\n1\t2\t3", TableOf<double>({{0, 0, 3}, {1, 2, 3}})},
  };
  for (const auto& row : rows) {
    SetTable(row.record);
    EXPECT_EQ(stream.GetTable2d(u"T"), Variant(row.expected)) << ToUtf8(row.record);
  }
  ExpectMessages({});
}

TEST_P(CFileStreamTablesTest, AlwaysReadsAsTheLiteralLinesAndCells) {
  std::mt19937 random(21);
  int tables = 0;
  for (int i = 0; i < 30'000; ++i) {
    Text fieldText = u"x\r\n";
    constexpr TextView kAlphabet = u"0123,.;-E \t\t\t\t\r\r\n\nx";
    while (fieldText.size() < 4 + static_cast<std::size_t>(i % 30))
      fieldText += kAlphabet[random() % kAlphabet.size()];
    fieldText += u'7';
    const Text separator = Text(1, u".,;E2"[random() % 5]);
    CFileStream fresh(fake.platform);
    fresh.SetContents(Text(u"[DEC SEP]\t") + separator + u"\r\n[T]\t" + fieldText);
    const Variant read = fresh.GetTable2d(u"T");
    const auto expected = test::LiteralTable(fieldText, separator, GetParam());
    ASSERT_EQ(read.IsEmpty(), !expected.has_value()) << ToUtf8(fieldText);
    if (!expected) continue;
    ++tables;
    ASSERT_EQ(read, Variant(TableOf(*expected))) << ToUtf8(fieldText);
  }
  EXPECT_GT(tables, 5000);
}

TEST_P(CFileStreamTablesTest, TableThatCannotBeReadIsReportedAndEmpty) {
  for (const TextView record : {
           u"\t1\t2\r\n",             // no row
           u"\r\n",                   // no value
           u"\t\r\n1\t2\r\n3\r\n",    // a short row
           u"\t\r\n1\t2\r\n3\t\r\n",  // the empty cell at the end of the record is cut
           u"\t\r\n1\t2\r\n\r\n3\t4\r\n",
           u"\tx\r\r\n1\r\n",      // nothing in the first row
           u"\tx\r\t\t\r\n1\r\n",  // no filled cell in the first row
           u"\t\r\n1\r\r\n2",      // a row without even an LF
       }) {
    SetTable(record);
    EXPECT_TRUE(stream.GetTable2d(u"T").IsEmpty()) << ToUtf8(record);
    ExpectMessages({u"An error occurred while getting table: T"});
  }
}

TEST_P(CFileStreamTablesTest, TableOfAnotherSeparatorIsConverted) {
  for (const TextView separator : {u".", u",", u";"}) {
    CFileStream fresh(fake.platform);
    fresh.SetContents(Text(u"[DEC SEP]\t").append(separator) + u"\r\n[T]\t\r\n1" + Text(separator) +
                      u"5\t2\r\n\t3E-1");
    EXPECT_EQ(fresh.GetTable2d(u"T"), Variant(TableOf<double>({{1.5, 2}, {0, 0.3}}))) << ToUtf8(separator);
  }
}

TEST_P(CFileStreamTablesTest, SeparatorIsLookedUpWhenTheFirstCellIsReadAndNotForATableWithoutOne) {
  const struct {
    TextView table;
    double expected;
  } rows[] = {
      {u"\t\r\n1\t2\t3\r\n4\r\n", 1.5},                    // refused at its second row
      {u"\t\r\n1\t2\t3\t4\t5\r\r\r\r\r\r\r\r\r\r6", 1.5},  // refused before there is memory for its cells
      {u"\tx\r\r\n1", 0.0},
      {u"\t1\t2\r\n", 0.0},
  };
  for (const auto& row : rows) {
    CFileStream fresh(fake.platform);
    fresh.SetContents(Text(u"[DEC SEP]\t;\r\n[T]").append(row.table));
    EXPECT_TRUE(fresh.GetTable2d(u"T").IsEmpty());
    fresh.SetContents(u"[DEC SEP]\t:\r\n[A]\t1;5\r\n");
    EXPECT_EQ(fresh.GetFieldNumber(u"A"), Variant(row.expected)) << ToUtf8(row.table);
    ExpectMessages({u"An error occurred while getting table: T"});
  }
}

// --- Three-dimensional tables ----------------------------------------------------------------------------

/// Rows 0 and 1, columns 0 and 1, pages 0 to 2; each cell tells its place.
BoundedArray<double> Cube() {
  BoundedArray<double> cube({0, 1}, {0, 1}, {0, 2});
  for (std::int32_t row = 0; row <= 1; ++row) {
    for (std::int32_t column = 0; column <= 1; ++column) {
      for (std::int32_t page = 0; page <= 2; ++page) cube(row, column, page) = 100 * row + 10 * column + page;
    }
  }
  return cube;
}

TEST_P(CFileStreamTablesTest, DeliberatePagesAreNumberedFromOneAndPageZeroIsNotWritten) {
  EXPECT_TRUE(stream.AddTable3d(u"N", Cube()));
  EXPECT_EQ(Records(), u"[N PAGE 1]\t\r\n1\t11\r\n101\t111\r\n[N PAGE 2]\t\r\n2\t12\r\n102\t112\r\n");
}

TEST_P(CFileStreamTablesTest, DeliberatePagesComeBackWithAnEmptyPageZero) {
  stream.AddTable3d(u"N", Cube());
  const Variant read = stream.GetTable3d(u"N", 1, 1, 2);
  BoundedArray<Variant> expected({0, 1}, {0, 1}, {0, 2});
  const BoundedArray<double> cube = Cube();
  for (std::int32_t row = 0; row <= 1; ++row) {
    for (std::int32_t column = 0; column <= 1; ++column) {
      for (std::int32_t page = 1; page <= 2; ++page) expected(row, column, page) = cube(row, column, page);
    }
  }
  EXPECT_EQ(read, Variant(expected));
}

TEST_P(CFileStreamTablesTest, EndIndexesTakeAPartOfTheTable) {
  EXPECT_TRUE(stream.AddTable3d(u"N", Cube(), 0, 0, 1));
  EXPECT_EQ(Records(), u"[N PAGE 1]\t\r\n1\t11\r\n101\t111\r\n");
  BoundedArray<double> table({0, 2}, {0, 2}, {0, 2});
  EXPECT_TRUE(stream.AddTable3d(u"N", table, 1, 2, 1));
  EXPECT_EQ(Records(), u"[N PAGE 1]\t\r\n0\t0\t0\r\n0\t0\t0\r\n");
}

TEST_P(CFileStreamTablesTest, DeliberateEndIndexZeroMeansAllOnWritingAndTheFirstOnReading) {
  stream.AddTable3d(u"N", Cube(), 0, 0, 0);
  const Variant read = stream.GetTable3d(u"N", 0, 0, 1);
  BoundedArray<Variant> expected({0, 0}, {0, 0}, {0, 1});
  expected(0, 0, 1) = 1.0;
  EXPECT_EQ(read, Variant(expected));
  EXPECT_EQ(stream.GetTable3d(u"N", 0, 0, 0), Variant(BoundedArray<Variant>({0, 0}, {0, 0}, {0, 0})));
  ExpectMessages({});
}

TEST_P(CFileStreamTablesTest, PagesCanHoldVariantsAndTexts) {
  BoundedArray<Variant> variants({0, 0}, {0, 1}, {1, 1});
  variants(0, 0, 1) = u"2";
  variants(0, 1, 1) = true;
  EXPECT_TRUE(stream.AddTable3d(u"V", variants));
  BoundedArray<Text> texts({0, 0}, {0, 0}, {0, 1});
  texts(0, 0, 1) = u"3";
  EXPECT_TRUE(stream.AddTable3d(u"X", texts));
  EXPECT_EQ(Records(), u"[V PAGE 1]\t\r\n2\tTrue\r\n[X PAGE 1]\t\r\n3\r\n");
}

TEST_P(CFileStreamTablesTest, PagesBeginAtIndexZeroWhateverTheLowerBounds) {
  BoundedArray<double> table({-1, 1}, {-2, 0}, {-1, 1});
  table(0, 0, 1) = 7;
  table(1, 0, 1) = 8;
  table(-1, -2, 1) = 9;
  EXPECT_TRUE(stream.AddTable3d(u"N", table));
  EXPECT_EQ(Records(), u"[N PAGE 1]\t\r\n7\r\n8\r\n");
  ExpectMessages({});
  for (const BoundedArray<double>& refused :
       {BoundedArray<double>({1, 2}, {0, 1}, {0, 1}), BoundedArray<double>({0, 1}, {1, 2}, {0, 1}),
        BoundedArray<double>({0, 1}, {0, 1}, {2, 3})}) {
    EXPECT_FALSE(stream.AddTable3d(u"N", refused));
    ExpectMessages({u"An error occurred while adding 3d table: N to the filestream"});
  }
  EXPECT_EQ(Records(), u"[N PAGE 1]\t\r\n7\r\n8\r\n");
}

TEST_P(CFileStreamTablesTest, EmptyVariantAndTableWithoutPagesAddNothing) {
  EXPECT_TRUE(stream.AddTable3d(u"N", Variant()));
  EXPECT_TRUE(stream.AddTable3d(u"N", BoundedArray<double>({0, 1}, {0, 1}, {0, 0})));
  EXPECT_TRUE(stream.AddTable3d(u"N", Cube(), 0, 0, -1));
  EXPECT_EQ(Records(), u"");
  ExpectMessages({});
}

TEST_P(CFileStreamTablesTest, TableThatIsNotThreeDimensionalIsReported) {
  for (const Variant& table : {Variant(Missing{}), Variant(1.5), Variant(u"x"), Variant(kSmallTable),
                               Variant(BoundedArray<double>())}) {
    EXPECT_FALSE(stream.AddTable3d(u"N", table));
    ExpectMessages({u"An error occurred while adding 3d table: N to the filestream"});
    EXPECT_FALSE(stream.AddTable3d(u"N", table, 1, 1, 1));
    ExpectMessages({u"An error occurred while adding 3d table: N to the filestream"});
  }
  EXPECT_EQ(Records(), u"");
}

TEST_P(CFileStreamTablesTest, IndexOutsideTheTableKeepsThePagesBefore) {
  const Text firstPages = u"[N PAGE 1]\t\r\n1\t11\r\n101\t111\r\n[N PAGE 2]\t\r\n2\t12\r\n102\t112\r\n";
  EXPECT_FALSE(stream.AddTable3d(u"N", Cube(), 1, 1, 3));
  ExpectMessages({u"An error occurred while adding 3d table: N to the filestream"});
  EXPECT_EQ(Records(), firstPages);
  for (const auto& [row, column] :
       {std::pair(2, 1), {1, 2}, {-1, 1}, {1, -1}, {kFarAway, 1}, {1, kFarAway}}) {
    EXPECT_FALSE(stream.AddTable3d(u"N", Cube(), row, column));
    ExpectMessages({u"An error occurred while adding 3d table: N to the filestream"});
  }
  EXPECT_EQ(Records(), firstPages);
}

TEST_P(CFileStreamTablesTest, DeliberatePageThatCannotBeWrittenIsLeftOutWithItsOwnMessage) {
  BoundedArray<double> cube = Cube();
  cube(1, 0, 1) = 1e39;
  EXPECT_TRUE(stream.AddTable3d(u"N", cube));
  ExpectMessages({u"An error occurred while adding table: N PAGE 1 to the filestream"});
  EXPECT_EQ(Records(), u"[N PAGE 2]\t\r\n2\t12\r\n102\t112\r\n");
}

TEST_P(CFileStreamTablesTest, DeliberateMissingPageIsReportedForTheWholeTable) {
  stream.AddTable3d(u"N", Cube());
  EXPECT_EQ(stream.GetTable3d(u"N", 1, 1, 3), Variant(false));
  ExpectMessages({u"An error occurred while getting 3d table: N"});
  EXPECT_EQ(stream.GetTable3d(u"N", kFarAway, kFarAway, kFarAway), Variant(false));
  ExpectMessages({u"An error occurred while getting 3d table: N"});
}

TEST_P(CFileStreamTablesTest, PageThatIsTooSmallOrUnreadableIsReported) {
  stream.AddTable3d(u"N", Cube());
  for (const auto& [row, column, page] :
       {std::tuple(2, 1, 2), {1, 2, 2}, {-1, 1, 2}, {1, -1, 2}, {1, 1, -1}}) {
    EXPECT_EQ(stream.GetTable3d(u"N", row, column, page), Variant(false));
    ExpectMessages({u"An error occurred while getting 3d table: N"});
  }
  stream.AddField(u"N PAGE 2", u"no table");
  EXPECT_EQ(stream.GetTable3d(u"N", 1, 1, 2), Variant(false));
  ExpectMessages(
      {u"An error occurred while getting table: N PAGE 2", u"An error occurred while getting 3d table: N"});
}

TEST_P(CFileStreamTablesTest, LargerPagesAreCut) {
  stream.AddTable2d(u"N PAGE 1", kSmallTable);
  const Variant read = stream.GetTable3d(u"N", 0, 1, 1);
  BoundedArray<Variant> expected({0, 0}, {0, 1}, {0, 1});
  expected(0, 0, 1) = 1.0;
  expected(0, 1, 1) = 0.5;
  EXPECT_EQ(read, Variant(expected));
}

}  // namespace
}  // namespace vorquill21
