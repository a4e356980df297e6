#include "vorquill21/import/import_column_data.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21 {
namespace {

using test::RaisedNumber;

constexpr TextView kPath = u"/library/columns.txt";
constexpr TextView kFailure = u"CImportColumnData.ImportData: An error occurred while importing data";
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

/// An importer of a comma-separated file, its header in line 1 and its values from line 2 on.
class CImportColumnDataTest : public ::testing::Test {
 protected:
  CImportColumnDataTest() {
    import.Filepath(kPath);
    import.Delimiter(u",");
    import.HeaderRow(1);
    import.FirstValueRow(2);
  }

  bool ImportOf(std::string_view content) {
    fake.files.Replace(kPath, content);
    const bool succeeded = import.Import(&status);
    EXPECT_EQ(import.LastImportSuccessful(), succeeded);
    EXPECT_EQ(fake.files.OpenReaders(), 0);
    EXPECT_TRUE(fake.desktop.messages.empty());
    return succeeded;
  }

  void ExpectFailure(std::string_view content) {
    status = u"before";
    EXPECT_FALSE(ImportOf(content));
    EXPECT_EQ(status, kFailure);
  }

  std::vector<double> Column(std::int32_t index) const {
    std::vector<double> values;
    const Variant column = import.ColumnData(index);
    for (const Variant& value : column.As<BoundedArray<Variant>>().Elements()) {
      values.push_back(value.As<double>());
    }
    return values;
  }

  /// The values of the only column, whose lines are given.
  std::vector<double> ColumnOf(std::string_view lines) {
    EXPECT_TRUE(ImportOf(std::string("a\n").append(lines)));
    return Column(0);
  }

  std::vector<Text> Headers() const {
    std::vector<Text> headers;
    for (std::int32_t i = 0; i < import.ColumnCount(); ++i) {
      headers.push_back(import.ColumnHeaderData(i).As<Text>());
    }
    return headers;
  }

  test::FakePlatform fake;
  CImportColumnData import{fake.platform};
  Text status = u"before";
};

std::string HeaderLine(int fields) {
  std::string line = "h0";
  for (int i = 1; i < fields; ++i) line += ",h" + std::to_string(i);
  return line + "\n";
}

// --- Properties ------------------------------------------------------------------------------------------

TEST_F(CImportColumnDataTest, ANewObjectIsEmpty) {
  const CImportColumnData fresh(fake.platform);
  EXPECT_EQ(fresh.Filepath(), u"");
  EXPECT_EQ(fresh.Delimiter(), u"");
  EXPECT_EQ(fresh.HeaderRow(), 0);
  EXPECT_EQ(fresh.FirstValueRow(), 0);
  EXPECT_EQ(fresh.MaxColumns(), 20);
  EXPECT_FALSE(fresh.LastImportSuccessful());
  EXPECT_EQ(fresh.ColumnCount(), 0);
  EXPECT_EQ(fresh.DataRowCount(), 0);
  EXPECT_EQ(RaisedNumber([&] { fresh.ColumnHeaderData(0); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { fresh.ColumnData(0); }), kSubscriptOutOfRange);
}

TEST_F(CImportColumnDataTest, DeliberateSettersStoreWhateverTheyAreGiven) {
  for (const std::int32_t value : {kLeast, -1, 0, 7, kMost}) {
    import.HeaderRow(value);
    import.FirstValueRow(value);
    import.MaxColumns(value);
    EXPECT_EQ(import.HeaderRow(), value);
    EXPECT_EQ(import.FirstValueRow(), value);
    EXPECT_EQ(import.MaxColumns(), value);
  }
  import.Filepath(u"no such:path?");
  import.Delimiter(u"");
  EXPECT_EQ(import.Filepath(), u"no such:path?");
  EXPECT_EQ(import.Delimiter(), u"");
}

// --- Import ----------------------------------------------------------------------------------------------

TEST_F(CImportColumnDataTest, ImportsHeadersAndValues) {
  EXPECT_TRUE(ImportOf("t,a,b\r\n0,1,2\r\n1,3,4\r\n"));
  EXPECT_EQ(import.ColumnCount(), 3);
  EXPECT_EQ(import.DataRowCount(), 2);
  EXPECT_EQ(import.ColumnHeaderData(0), Variant(u"t"));
  EXPECT_EQ(import.ColumnData(2, 1), Variant(4.0));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"t", u"a", u"b"}));
  EXPECT_EQ(Column(0), (std::vector<double>{0, 1}));
  EXPECT_EQ(Column(1), (std::vector<double>{1, 3}));
  EXPECT_EQ(Column(2), (std::vector<double>{2, 4}));
  EXPECT_EQ(status, u"before");
}

TEST_F(CImportColumnDataTest, AStatusIsOptional) {
  fake.files.Replace(kPath, HeaderLine(20));
  EXPECT_TRUE(import.Import());
  import.Filepath(u"/library/missing.txt");
  EXPECT_FALSE(import.Import());
}

TEST_F(CImportColumnDataTest, AWholeColumnHasBoundsFromZero) {
  ImportOf("a\n5\n6\n7\n");
  const Variant column = import.ColumnData(0, -1);
  EXPECT_EQ(ArrayBounds(column), (Bounds{0, 2}));
  EXPECT_EQ(ArrayElement(column, 2), Variant(7.0));
  EXPECT_EQ(column, import.ColumnData(0));
}

TEST_F(CImportColumnDataTest, IndicesOutsideTheListsAreSubscriptErrors) {
  ImportOf("a,b\n1,2\n");
  for (const std::int32_t column : {kLeast, -1, 2, kMost}) {
    EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(column); }), kSubscriptOutOfRange) << column;
    EXPECT_EQ(RaisedNumber([&] { import.ColumnData(column); }), kSubscriptOutOfRange) << column;
    EXPECT_EQ(RaisedNumber([&] { import.ColumnData(column, 0); }), kSubscriptOutOfRange) << column;
    EXPECT_EQ(RaisedNumber([&] { import.OffsetColumnData(column, 1); }), kSubscriptOutOfRange) << column;
  }
  for (const std::int32_t position : {kLeast, -2, 1, kMost}) {
    EXPECT_EQ(RaisedNumber([&] { import.ColumnData(0, position); }), kSubscriptOutOfRange) << position;
  }
}

TEST_F(CImportColumnDataTest, EveryLineEndEndsALine) {
  for (const std::string lines : {"a,b\r\n1,2\r\n3,4", "a,b\n1,2\n3,4", "a,b\r1,2\r3,4", "a,b\r1,2\n3,4"}) {
    for (const char* lastEnd : {"", "\r\n", "\r", "\n"}) {
      EXPECT_TRUE(ImportOf(lines + lastEnd));
      EXPECT_EQ(Column(0), (std::vector<double>{1, 3})) << lines;
      EXPECT_EQ(Column(1), (std::vector<double>{2, 4})) << lines;
    }
  }
}

TEST_F(CImportColumnDataTest, LinesBeforeTheHeaderAndBeforeTheValuesAreSkipped) {
  import.HeaderRow(3);
  import.FirstValueRow(6);
  EXPECT_TRUE(ImportOf("title\n\na,b\nunits,units\n1,1\n2,3\n4,5\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"a", u"b"}));
  EXPECT_EQ(Column(0), (std::vector<double>{2, 4}));
}

TEST_F(CImportColumnDataTest, ValuesNeverBeginBeforeTheLineAfterTheHeader) {
  for (const std::int32_t row : {kLeast + 2, -1, 0, 1, 2}) {
    import.FirstValueRow(row);
    EXPECT_TRUE(ImportOf("a\n1\n2\n"));
    EXPECT_EQ(Column(0), (std::vector<double>{1, 2})) << row;
  }
}

TEST_F(CImportColumnDataTest, AFileWithoutDataRowsImportsWithNone) {
  for (const std::string_view content : {"a,b\n", "a,b"}) {
    EXPECT_TRUE(ImportOf(content));
    EXPECT_EQ(import.ColumnCount(), 2);
    EXPECT_EQ(import.DataRowCount(), 0);
    EXPECT_EQ(import.ColumnData(1), Variant(BoundedArray<Variant>::Empty()));
    EXPECT_EQ(RaisedNumber([&] { import.ColumnData(1, 0); }), kSubscriptOutOfRange);
    import.OffsetColumnData(1, 1.5);
  }
}

TEST_F(CImportColumnDataTest, ALongFileIsReadWhole) {
  constexpr int kRows = 20011;
  std::string content = "row,square\r\n";
  for (int row = 0; row < kRows; ++row) {
    content += std::to_string(row) + "," + std::to_string(double{1} * row * row) + "\r\n";
  }
  EXPECT_TRUE(ImportOf(content));
  ASSERT_EQ(import.DataRowCount(), kRows);
  for (int row = 0; row < kRows; ++row) {
    ASSERT_EQ(import.ColumnData(0, row), Variant(double{1} * row));
    ASSERT_EQ(import.ColumnData(1, row), Variant(double{1} * row * row));
  }
}

TEST_F(CImportColumnDataTest, FieldsBeyondTheLastColumnAreIgnored) {
  EXPECT_TRUE(ImportOf("a,b\n1,2,1E999,x\n3,4,\n"));
  EXPECT_EQ(Column(0), (std::vector<double>{1, 3}));
  EXPECT_EQ(Column(1), (std::vector<double>{2, 4}));
}

TEST_F(CImportColumnDataTest, AnotherImportReplacesTheResultOfTheLast) {
  EXPECT_TRUE(ImportOf("a,b,c\n1,2,3\n4,5,6\n"));
  EXPECT_TRUE(ImportOf("x\n9\n"));
  EXPECT_EQ(import.ColumnCount(), 1);
  EXPECT_EQ(import.DataRowCount(), 1);
  EXPECT_EQ(Headers(), std::vector<Text>{u"x"});
  EXPECT_EQ(Column(0), std::vector<double>{9});
  EXPECT_EQ(RaisedNumber([&] { import.ColumnData(1); }), kSubscriptOutOfRange);
  EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(1); }), kSubscriptOutOfRange);
}

// --- Fields ----------------------------------------------------------------------------------------------

TEST_F(CImportColumnDataTest, DeliberateARunOfDelimitersCountsAsOne) {
  EXPECT_TRUE(ImportOf(",,a,,b,\n1,,2\n,,,3,4,,,\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"a", u"b"}));
  EXPECT_EQ(Column(0), (std::vector<double>{1, 3}));
  EXPECT_EQ(Column(1), (std::vector<double>{2, 4}));
}

TEST_F(CImportColumnDataTest, DeliberateAMissingValueShiftsTheNextIntoItsColumn) {
  EXPECT_TRUE(ImportOf("a,b,c\n1,,2,3\n"));
  EXPECT_EQ(Column(1), std::vector<double>{2});
  EXPECT_EQ(Column(2), std::vector<double>{3});
  EXPECT_TRUE(ImportOf("a,b,c\n1,,2\n"));
  EXPECT_EQ(import.DataRowCount(), 0);
}

TEST_F(CImportColumnDataTest, DeliberateABlankOrShortLineEndsTheData) {
  for (const std::string_view line : {"", ",,", "7", "7,", ",7,,"}) {
    EXPECT_TRUE(ImportOf("a,b\n1,2\n" + std::string(line) + "\n3,4\n")) << line;
    EXPECT_EQ(import.DataRowCount(), 1) << line;
    EXPECT_EQ(Column(0), std::vector<double>{1}) << line;
    EXPECT_EQ(Column(1), std::vector<double>{2}) << line;
  }
}

TEST_F(CImportColumnDataTest, WhatFollowsTheEndOfTheDataIsNotLookedAt) {
  EXPECT_TRUE(ImportOf("a,b\n1,2\n\n1E999,0\n"));
  EXPECT_EQ(import.DataRowCount(), 1);
}

TEST_F(CImportColumnDataTest, BlanksAreFieldsWhereTheyAreNoDelimiters) {
  EXPECT_TRUE(ImportOf(" , a \n ,2\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{u" ", u" a "}));
  EXPECT_EQ(Column(0), std::vector<double>{0});
}

TEST_F(CImportColumnDataTest, DeliberateEachFieldGivesTheNumberThatItBeginsWith) {
  const struct {
    const char* field;
    double value;
  } kFields[] = {
      {"12:30", 12.3},
      {"1:2:3", 1.2},
      {":5", 0.5},
      {"-:5", -0.5},
      {"12:", 12},
      {"1.5:7", 1.5},
      {"1E2:5", 100},
      {"1:5E2", 150},
      {"letters", 0},
      {"3.5kg", 3.5},
      {"  7", 7},
      {"\t7", 0},
      {"7 ", 7},
      {"7 8", 7},
      {"+4", 4},
      {"-4", -4},
      {"--4", 0},
      {"1.2.3", 1.2},
      {".", 0},
      {".5", 0.5},
      {"5.", 5},
      {"1e3", 1000},
      {"1D3", 1000},
      {"1d-1", 0.1},
      {"1e", 1},
      {"1e+", 1},
      {"1ex", 1},
      {"&H10", 0},
      {"0x10", 0},
      {"inf", 0},
      {"nan", 0},
      {"1E-400", 0},
      {"-", 0},
      {"\"5\"", 0},
      {"1;5", 1},
      {"kg 12:30", 0},
      {"3kg:5", 3},
      {" :5", 0.5},
      {"4.9E-324", 5e-324},
      {"0.1", 0.1},
      {"1.7976931348623157E308", std::numeric_limits<double>::max()},
      {"123456789012345678901234567890", 123456789012345678901234567890.0},
  };
  for (const auto& [field, value] : kFields) {
    EXPECT_EQ(ColumnOf(std::string(field) + "\n"), std::vector<double>{value}) << field;
    EXPECT_EQ(ColumnOf(std::string(field) + ",9\n"), std::vector<double>{value}) << field;
  }
}

TEST_F(CImportColumnDataTest, TheDecimalSeparatorIsAPointWhateverTheLocale) {
  fake.locale.decimalSeparator = u',';
  import.Delimiter(u";");
  EXPECT_TRUE(ImportOf("a;b\n1.5;2,5\n"));
  EXPECT_EQ(import.ColumnData(0, 0), Variant(1.5));
  EXPECT_EQ(import.ColumnData(1, 0), Variant(2.0));
}

TEST_F(CImportColumnDataTest, ADelimiterMayHaveSeveralCharacters) {
  import.Delimiter(u", ");
  EXPECT_TRUE(ImportOf("a, b,c, , d\n1, 2,5, 3\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"a", u"b,c", u"d"}));
  EXPECT_EQ(Column(1), std::vector<double>{2});
  EXPECT_EQ(Column(2), std::vector<double>{3});

  import.Delimiter(u"aa");
  EXPECT_TRUE(ImportOf("aaahaaaax\naa1aaa\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"ah", u"x"}));
  EXPECT_EQ(Column(0), std::vector<double>{1});
  EXPECT_EQ(Column(1), std::vector<double>{0});
}

TEST_F(CImportColumnDataTest, ADelimiterIsMatchedInExactlyItsLetters) {
  import.Delimiter(u"x");
  EXPECT_TRUE(ImportOf("axbXc\n1x2X3\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"a", u"bXc"}));
  EXPECT_EQ(Column(1), std::vector<double>{2});
}

TEST_F(CImportColumnDataTest, ADelimiterMayBePartOfNumbers) {
  const struct {
    TextView delimiter;
    const char* content;
    std::vector<double> row;
  } kCases[] = {
      {u".", "a.b.c\n1.5.-2\n", {1, 5, -2}}, {u"-", "a-b\n-1-2\n", {1, 2}},
      {u"e", "a,eb\n1e5\n", {1, 5}},         {u"0", "a0b\n1002\n", {1, 2}},
      {u":", "a:b\n12:30\n", {12, 30}},      {u" ", "a b\n  1   2 \n", {1, 2}},
      {u"  ", "a  b\n   1  2 3\n", {1, 2}},  {u"5", "a5b\n1.52.5\n", {1, 2}},
      {u" ;", "a ;b\n  ;7\n", {0, 7}},       {u"E+", "aE+b\n1E+2\n", {1, 2}},
      {u"\t", "a\tb\n1 \t 2\n", {1, 2}},     {u"+", "a+b\n+1+2\n", {1, 2}},
      {u"D", "aDb\n1D2\n", {1, 2}},          {u"a", "xay\n12:30a0:5\n", {12.3, 0.5}},
  };
  for (const auto& [delimiter, content, row] : kCases) {
    import.Delimiter(delimiter);
    EXPECT_TRUE(ImportOf(content)) << content;
    ASSERT_EQ(import.DataRowCount(), 1) << content;
    for (std::size_t column = 0; column < row.size(); ++column) {
      EXPECT_EQ(import.ColumnData(static_cast<std::int32_t>(column), 0), Variant(row[column])) << content;
    }
  }
}

TEST_F(CImportColumnDataTest, ANulIsAnOrdinaryCharacter) {
  using namespace std::string_view_literals;
  EXPECT_TRUE(ImportOf("a\0b,\0\n1\0002,\0003\n"sv));
  EXPECT_EQ(Headers(), (std::vector<Text>{Text(u"a\0b"sv), Text(u"\0"sv)}));
  EXPECT_EQ(Column(0), std::vector<double>{1});
  EXPECT_EQ(Column(1), std::vector<double>{0});
  import.Delimiter(u"\0"sv);
  EXPECT_TRUE(ImportOf("a\0b\0\n1\0002\0\n"sv));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"a", u"b"}));
  EXPECT_EQ(Column(1), std::vector<double>{2});
}

TEST_F(CImportColumnDataTest, QuotesAndBracketsBelongToTheFields) {
  EXPECT_TRUE(ImportOf("\"a,b\",[c]\n\"1,2\",[3]\n4,5,6\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{u"\"a", u"b\"", u"[c]"}));
  EXPECT_EQ(Column(0), (std::vector<double>{0, 4}));
  EXPECT_EQ(Column(1), (std::vector<double>{2, 5}));
  EXPECT_EQ(Column(2), (std::vector<double>{0, 6}));
}

TEST_F(CImportColumnDataTest, AHeaderAndAFieldMayBeLongerThanABlockOfTheFile) {
  const std::string longHeader(200'000, 'h');
  const std::string manyZeros(200'000, '0');
  EXPECT_TRUE(ImportOf(longHeader + ",b\n" + manyZeros + "7,1." + manyZeros + "5\n2,3\n"));
  EXPECT_EQ(Headers(), (std::vector<Text>{FromUtf8(longHeader), u"b"}));
  EXPECT_EQ(Column(0), (std::vector<double>{7, 2}));
  EXPECT_EQ(Column(1), (std::vector<double>{1, 3}));
}

TEST_F(CImportColumnDataTest, ADelimiterThatHoldsALineEndIsNeverFound) {
  import.Delimiter(u"\n");
  EXPECT_TRUE(ImportOf("a,b\n1,2\n3,4\n"));
  EXPECT_EQ(Headers(), std::vector<Text>{u"a,b"});
  EXPECT_EQ(Column(0), (std::vector<double>{1, 3}));
}

// --- The limit of columns --------------------------------------------------------------------------------

TEST_F(CImportColumnDataTest, DeliberateAtMostOneColumnLessThanMaxColumnsIsKept) {
  EXPECT_TRUE(ImportOf(HeaderLine(19) + "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19\n"));
  EXPECT_EQ(import.ColumnCount(), 19);
  EXPECT_EQ(status, u"before");

  EXPECT_TRUE(ImportOf(HeaderLine(20) + "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19\n"));
  EXPECT_EQ(import.ColumnCount(), 19);
  EXPECT_EQ(import.ColumnHeaderData(18), Variant(u"h18"));
  EXPECT_EQ(import.ColumnData(18, 0), Variant(19.0));
  EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(19); }), kSubscriptOutOfRange);
  EXPECT_EQ(status, u"Maximum number of data columns exceeded. Columns 20 and above will be ignored.");
}

TEST_F(CImportColumnDataTest, TheLimitMessageNamesMaxColumns) {
  import.MaxColumns(2);
  EXPECT_TRUE(ImportOf("a,b\n1,2\n"));
  EXPECT_EQ(import.ColumnCount(), 1);
  EXPECT_EQ(status, u"Maximum number of data columns exceeded. Columns 2 and above will be ignored.");
}

TEST_F(CImportColumnDataTest, AHugeMaxColumnsTakesNoMemory) {
  import.MaxColumns(kMost);
  EXPECT_TRUE(ImportOf(HeaderLine(1000)));
  EXPECT_EQ(import.ColumnCount(), 1000);
  EXPECT_EQ(status, u"before");
}

TEST_F(CImportColumnDataTest, WithRoomForNoColumnTheImportFails) {
  for (const std::int32_t maximum : {kLeast, -1, 0, 1}) {
    import.MaxColumns(maximum);
    ExpectFailure("a,b\n1,2\n");
  }
}

// --- Failures --------------------------------------------------------------------------------------------

TEST_F(CImportColumnDataTest, AMissingFileFails) {
  import.Filepath(u"/library/missing.txt");
  EXPECT_FALSE(import.Import(&status));
  EXPECT_EQ(status, kFailure);
  EXPECT_FALSE(import.LastImportSuccessful());
}

TEST_F(CImportColumnDataTest, ANewObjectFails) {
  CImportColumnData fresh(fake.platform);
  EXPECT_FALSE(fresh.Import(&status));
  EXPECT_EQ(status, kFailure);
}

TEST_F(CImportColumnDataTest, AnEmptyDelimiterFailsAtOnce) {
  ImportOf("old\n1\n");
  import.Delimiter(u"");
  ExpectFailure("a,b\n1,2\n");
  EXPECT_EQ(Headers(), std::vector<Text>{u"old"});
}

TEST_F(CImportColumnDataTest, AHeaderLineWithoutFieldsFails) {
  for (const std::string_view content : {"\n1,2\n", ",,,\n1,2\n"}) ExpectFailure(content);
}

TEST_F(CImportColumnDataTest, WithoutAHeaderLineTheImportFails) {
  for (const std::int32_t row : {kLeast, -1, 0}) {
    import.HeaderRow(row);
    ExpectFailure("a,b\n1,2\n");
  }
}

TEST_F(CImportColumnDataTest, AHeaderRowBeyondTheEndFails) {
  ExpectFailure("");
  for (const std::int32_t row : {3, kMost}) {
    import.HeaderRow(row);
    ExpectFailure("a,b\n1,2\n");
  }
}

TEST_F(CImportColumnDataTest, SkippingLinesBeyondTheEndFails) {
  import.FirstValueRow(3);
  EXPECT_TRUE(ImportOf("a,b\n1,2\n"));
  EXPECT_EQ(import.DataRowCount(), 0);
  for (const std::int32_t row : {4, kMost}) {
    import.FirstValueRow(row);
    ExpectFailure("a,b\n1,2\n");
  }
}

TEST_F(CImportColumnDataTest, ADistanceOfRowsThatOverflowsFails) {
  for (const std::int32_t row : {kLeast, kLeast + 1}) {
    import.FirstValueRow(row);
    ExpectFailure("a,b\n1,2\n");
  }
}

TEST_F(CImportColumnDataTest, ANumberTooLargeFails) {
  for (const std::string_view field : {"1E999", "-1E309", "1:8E308", "1E309kg"}) {
    ExpectFailure("a,b\n1,2\n3," + std::string(field) + "\n");
  }
}

TEST_F(CImportColumnDataTest, TheFailureReplacesTheLimitMessage) {
  ExpectFailure(HeaderLine(25) + "1E999\n");
}

TEST_F(CImportColumnDataTest, DeliberateAFailureKeepsTheColumnsOfTheLastSuccess) {
  ImportOf("a,b\n1,2\n3,4\n");
  ExpectFailure("x\n1E999\n");
  EXPECT_EQ(import.ColumnCount(), 1);
  EXPECT_EQ(Headers(), std::vector<Text>{u"x"});
  EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(1); }), kSubscriptOutOfRange);
  EXPECT_EQ(import.DataRowCount(), 2);
  EXPECT_EQ(Column(0), (std::vector<double>{1, 3}));
  EXPECT_EQ(Column(1), (std::vector<double>{2, 4}));
  import.OffsetColumnData(1, 2);
  EXPECT_EQ(Column(1), (std::vector<double>{0, 2}));
}

TEST_F(CImportColumnDataTest, AFailureBeforeTheHeadersLeavesTheirListSizedAndEmpty) {
  ImportOf("a,b\n1,2\n");
  import.Filepath(u"/library/missing.txt");
  import.MaxColumns(5);
  EXPECT_FALSE(import.Import());
  EXPECT_EQ(import.ColumnCount(), 2);
  for (std::int32_t i = 0; i < 5; ++i) EXPECT_EQ(import.ColumnHeaderData(i), Variant(u"")) << i;
  EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(5); }), kSubscriptOutOfRange);
}

TEST_F(CImportColumnDataTest, AHeaderLineWithoutFieldsLeavesTheListSizedAndNoColumns) {
  ImportOf("a,b\n1,2\n");
  ExpectFailure(",,\n1,2\n");
  EXPECT_EQ(import.ColumnCount(), 0);
  EXPECT_EQ(import.DataRowCount(), 1);
  EXPECT_EQ(import.ColumnHeaderData(19), Variant(u""));
  EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(20); }), kSubscriptOutOfRange);
}

TEST_F(CImportColumnDataTest, AnImpossibleMaxColumnsLeavesTheHeadersAlone) {
  ImportOf("a,b\n1,2\n");
  for (const std::int32_t maximum : {kLeast, -1, 0}) {
    import.MaxColumns(maximum);
    ExpectFailure("x\n1\n");
    EXPECT_EQ(Headers(), (std::vector<Text>{u"a", u"b"}));
    EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(2); }), kSubscriptOutOfRange);
  }
}

TEST_F(CImportColumnDataTest, RoomForNoColumnLeavesAListOfOneEmptyHeader) {
  ImportOf("a,b\n1,2\n");
  import.MaxColumns(1);
  ExpectFailure("x\n1\n");
  EXPECT_EQ(import.ColumnCount(), 0);
  EXPECT_EQ(import.ColumnHeaderData(0), Variant(u""));
  EXPECT_EQ(RaisedNumber([&] { import.ColumnHeaderData(1); }), kSubscriptOutOfRange);
}

TEST_F(CImportColumnDataTest, ASuccessAfterAFailureIsASuccess) {
  ExpectFailure("");
  EXPECT_TRUE(ImportOf("a\n1\n"));
  EXPECT_TRUE(import.LastImportSuccessful());
}

// --- Offset ----------------------------------------------------------------------------------------------

TEST_F(CImportColumnDataTest, DeliberateAPositiveOffsetLowersTheValues) {
  ImportOf("a,b\n2,7\n4,8\n");
  import.OffsetColumnData(0, 1.5);
  EXPECT_EQ(Column(0), (std::vector<double>{0.5, 2.5}));
  EXPECT_EQ(Column(1), (std::vector<double>{7, 8}));
  import.OffsetColumnData(0, -0.25);
  EXPECT_EQ(Column(0), (std::vector<double>{0.75, 2.75}));
}

TEST_F(CImportColumnDataTest, AnOffsetThatOverflowsIsAnErrorAfterTheValuesBefore) {
  ImportOf("a\n1E307\n-1E308\n5\n");
  EXPECT_EQ(RaisedNumber([&] { import.OffsetColumnData(0, 1E308); }), kOverflow);
  EXPECT_EQ(Column(0), (std::vector<double>{1E307 - 1E308, -1E308, 5}));
}

TEST_F(CImportColumnDataTest, AnInfiniteOffsetPassesThrough) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  ImportOf("a\n1\n");
  import.OffsetColumnData(0, kInfinity);
  EXPECT_EQ(Column(0), std::vector<double>{-kInfinity});
}

}  // namespace
}  // namespace vorquill21
