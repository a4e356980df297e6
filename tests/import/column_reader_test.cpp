#include "vorquill21/import/column_reader.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vorquill21 {
namespace {

TEST(RoomForRowsTest, ThereIsAlwaysRoomForAnotherRow) {
  for (const std::size_t rows : {0u, 1u, 15u, 16u, 499u, 500u, 100000u}) {
    for (const std::uint64_t length : {0u, 1u, 100u, 1000000u}) {
      for (const std::uint64_t passed : {1u, 100u, 1000000u}) {
        EXPECT_GT(RoomForRows(rows, 3, passed, length), rows) << rows << ' ' << passed << ' ' << length;
      }
    }
  }
}

TEST(RoomForRowsTest, NeverMoreThanTheRestOfTheFileCanHold) {
  // One row of three values takes six bytes; the last of a file may lack its end.
  EXPECT_EQ(RoomForRows(0, 3, 94, 100), 2u);
  EXPECT_EQ(RoomForRows(0, 3, 95, 100), 2u);
  EXPECT_EQ(RoomForRows(0, 3, 96, 100), 1u);
  EXPECT_EQ(RoomForRows(1000, 3, 100, 100), 1001u);
}

TEST(RoomForRowsTest, FewRowsAreDoubled) {
  EXPECT_EQ(RoomForRows(0, 1, 10, 1000000), 16u);
  EXPECT_EQ(RoomForRows(16, 1, 10, 1000000), 32u);
  EXPECT_EQ(RoomForRows(256, 1, 10, 1000000), 512u);
}

TEST(RoomForRowsTest, ManyRowsForetellTheRest) {
  EXPECT_EQ(RoomForRows(1000, 2, 10000, 1000000), 102000u);
  EXPECT_EQ(RoomForRows(1000, 2, 990000, 1000000), 1250u);
}

TEST(RoomForRowsTest, AFileOfUnknownOrGrowingLengthIsDoubled) {
  EXPECT_EQ(RoomForRows(1000, 2, 10000, 0), 2000u);
  EXPECT_EQ(RoomForRows(1000, 2, 10000, 9999), 2000u);
}

TEST(FieldSplitterTest, TakesFieldsOffTheFront) {
  const FieldSplitter<char> splitter(", ");
  std::string_view line = ", , a, b,c, , d";
  std::string_view field;
  EXPECT_TRUE(splitter.GetNextField(line, field));
  EXPECT_EQ(field, "a");
  EXPECT_EQ(line, "b,c, , d");
  EXPECT_TRUE(splitter.GetNextField(line, field));
  EXPECT_EQ(field, "b,c");
  EXPECT_TRUE(splitter.GetNextField(line, field));
  EXPECT_EQ(field, "d");
  EXPECT_EQ(line, "");
  EXPECT_FALSE(splitter.GetNextField(line, field));
  EXPECT_EQ(field, "");
}

TEST(FieldSplitterTest, OnlyDelimitersAreNoField) {
  const FieldSplitter<char16_t> splitter(u"aa");
  TextView line = u"aaaa";
  TextView field = u"before";
  EXPECT_FALSE(splitter.GetNextField(line, field));
  EXPECT_EQ(field, u"");
  EXPECT_EQ(line, u"");
}

std::vector<double> ValuesAtFront(const char* delimiter, std::string_view text, std::size_t room,
                                  std::size_t expectedLength) {
  std::vector<double> values(room);
  const auto rows = FieldSplitter<char>(delimiter).GetRowsAtFront(text, 2, values);
  EXPECT_EQ(rows.end, text.data() + expectedLength) << text;
  values.resize(2 * rows.count);
  return values;
}

TEST(FieldSplitterTest, RowsAreReadWhereTheyLieAsFarAsThereIsRoom) {
  const std::string text = "1\t2\n3\t4\r\n5\t6\n7\t";
  EXPECT_EQ(ValuesAtFront("\t", text, 100, 13), (std::vector<double>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(ValuesAtFront("\t", text, 6, 13), (std::vector<double>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(ValuesAtFront("\t", text, 5, 9), (std::vector<double>{1, 2, 3, 4}));
  EXPECT_EQ(ValuesAtFront("\t", text, 2, 4), (std::vector<double>{1, 2}));
  EXPECT_EQ(ValuesAtFront("\t", "\n" + text, 100, 0), std::vector<double>());
  EXPECT_EQ(ValuesAtFront("\t", "", 100, 0), std::vector<double>());
}

TEST(FieldSplitterTest, WithADelimiterThatNumbersHoldNoRowIsReadWhereItLies) {
  double values[2];
  for (const char* delimiter : {"e", "E", "d", "D", ".", "-", "+", "5", "\t\t", ", "}) {
    const std::string text = std::string("1") + delimiter + "2" + delimiter;
    EXPECT_EQ(ValuesAtFront(delimiter, text + "\n", 100, 0), std::vector<double>()) << delimiter;
    EXPECT_TRUE(FieldSplitter<char>(delimiter).GetRow(text, values)) << delimiter;
    EXPECT_EQ(values[1], 2.0) << delimiter;
  }
}

TEST(FieldSplitterTest, WithADelimiterThatEndsLinesNoRowIsReadWhereItLies) {
  for (const char* delimiter : {"\r", "\n"}) {
    const std::string text = std::string("1") + delimiter + delimiter + "2" + delimiter;
    EXPECT_EQ(ValuesAtFront(delimiter, text, 100, 0), std::vector<double>());
  }
}

}  // namespace
}  // namespace vorquill21
