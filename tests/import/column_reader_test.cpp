#include "vorquill21/import/column_reader.hpp"

#include <gtest/gtest.h>

#include <string>

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

TEST(FieldSplitterTest, ARowIsReadWhereItLies) {
  const FieldSplitter<char> splitter("\t");
  for (const std::string rest : {"\r", "\n", "\r\n7", "\t\r\n", "\t3\n"}) {
    for (const std::string row : {"1.5\t2", "\t1.5\t\t2", "1:5kg\t 2 ", "1.5x\t2:"}) {
      const std::string text = row + rest;
      double values[2] = {0, 0};
      EXPECT_EQ(splitter.GetRowAtFront(text, values), text.data() + row.size()) << row;
      EXPECT_EQ(values[0], 1.5) << row;
      EXPECT_EQ(values[1], 2.0) << row;
    }
  }
}

TEST(FieldSplitterTest, ARowThatMayGoOnBehindTheTextIsNotReadWhereItLies) {
  double values[2];
  for (const std::string_view text : {"", "1", "1.5\t", "1.5\t2", "1.5\tx", "1.5\t2 ", "\t\t"}) {
    EXPECT_EQ(FieldSplitter<char>("\t").GetRowAtFront(text, values), nullptr) << text;
  }
}

TEST(FieldSplitterTest, AShortRowIsNotReadWhereItLies) {
  double values[2];
  for (const std::string_view text : {"\n3\t4\n", "1\n3\t4\n", "1\t\r\n3\t4\n", "\t\r3\t4\r"}) {
    EXPECT_EQ(FieldSplitter<char>("\t").GetRowAtFront(text, values), nullptr) << text;
  }
}

TEST(FieldSplitterTest, WithADelimiterThatNumbersHoldNoRowIsReadWhereItLies) {
  double values[2];
  for (const char* delimiter : {"e", ".", "-", "5", "\t\t", ", "}) {
    const std::string text = std::string("1") + delimiter + "2" + delimiter + "\n";
    EXPECT_EQ(FieldSplitter<char>(delimiter).GetRowAtFront(text, values), nullptr) << delimiter;
    EXPECT_TRUE(FieldSplitter<char>(delimiter).GetRow(text, values)) << delimiter;
    EXPECT_EQ(values[1], 2.0) << delimiter;
  }
}

TEST(FieldSplitterTest, WithADelimiterThatEndsLinesNoRowIsReadWhereItLies) {
  double values[2];
  for (const char* delimiter : {"\r", "\n"}) {
    const std::string text = std::string("1") + delimiter + delimiter + "2" + delimiter;
    EXPECT_EQ(FieldSplitter<char>(delimiter).GetRowAtFront(text, values), nullptr);
  }
}

}  // namespace
}  // namespace vorquill21
