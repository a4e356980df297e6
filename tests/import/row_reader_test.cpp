#include "vorquill21/import/row_reader.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "tests/support/raised_number.hpp"

namespace vorquill21 {
namespace {

using Rows = std::vector<std::array<double, 2>>;

/// What is read of a text with rows of two values, and how much of it that takes.
struct Outcome {
  Rows rows;
  std::size_t length;
};

Outcome Read(const std::string& text, char delimiter = '\t') {
  const std::vector<char> bytes(text.begin(), text.end());
  RowReader reader({bytes.data(), bytes.size()}, delimiter);
  Outcome outcome;
  for (std::array<double, 2> row; reader.ReadRow(row);) outcome.rows.push_back(row);
  outcome.length = static_cast<std::size_t>(reader.RowsEnd() - bytes.data());
  return outcome;
}

TEST(RowReaderTest, EveryLineEndEndsARow) {
  for (const std::string lineEnd : {"\n", "\r", "\r\n"}) {
    const std::string text = "1\t2" + lineEnd + "3\t4" + lineEnd;
    const auto [rows, length] = Read(text + "5");
    EXPECT_EQ(rows, (Rows{{1, 2}, {3, 4}}));
    EXPECT_EQ(length, text.size());
  }
}

TEST(RowReaderTest, DelimitersInFrontAndInRunsDoNotCount) {
  const std::string text = "\t1\t2\r\n1\t\t\t2\r\n\t\t1\t2\t\t\r\n";
  const auto [rows, length] = Read(text);
  EXPECT_EQ(rows, (Rows{{1, 2}, {1, 2}, {1, 2}}));
  EXPECT_EQ(length, text.size());
}

TEST(RowReaderTest, FieldsThatAreTooManyArePassedOver) {
  const std::string text = "1\t2\t3\n4\t5\tx\t1E999\r\n6\t7\n";
  const auto [rows, length] = Read(text);
  EXPECT_EQ(rows, (Rows{{1, 2}, {4, 5}, {6, 7}}));
  EXPECT_EQ(length, text.size());
}

TEST(RowReaderTest, UnusualFieldsHaveTheValuesThatFieldsHave) {
  const std::string text = "12:30\t3.5kg\nx\t 7\n1:2:3\t-\n1D2\t+1\n-.\t-0\n";
  const auto [rows, length] = Read(text);
  EXPECT_EQ(rows, (Rows{{12.3, 3.5}, {0, 7}, {1.2, 0}, {100, 1}, {0, -0.0}}));
  EXPECT_EQ(length, text.size());
}

TEST(RowReaderTest, ALineThatIsTooShortIsNoRow) {
  for (const std::string line : {"", "\t", "3", "3\t", "\t3", "\t\t3\t\t"}) {
    for (const std::string lineEnd : {"\n", "\r", "\r\n"}) {
      const auto [rows, length] = Read("1\t2\n" + line + lineEnd + "4\t5\n6\t7\n");
      EXPECT_EQ(rows, (Rows{{1, 2}})) << testing::PrintToString(line + lineEnd);
      EXPECT_EQ(length, 4u);
    }
  }
}

TEST(RowReaderTest, ALineThatMayGoOnBehindTheTextIsNoRow) {
  for (const std::string line : {"", "3", "3\t", "3\t4", "3\t4\t", "3\t4\t5", "3\t4\r", "\t", "3\tx"}) {
    const auto [rows, length] = Read("1\t2\n" + line);
    EXPECT_EQ(rows, (Rows{{1, 2}})) << testing::PrintToString(line);
    EXPECT_EQ(length, 4u);
  }
}

TEST(RowReaderTest, RowsOfEveryLengthAreReadAtEveryPlace) {
  for (std::size_t length = 1; length < 150; ++length) {
    std::string text;
    for (int row = 0; row < 10; ++row) text += "1\t2" + std::string(length, '0') + "\n";
    const auto [rows, passed] = Read(text);
    ASSERT_EQ(rows.size(), 10u) << length;
    EXPECT_EQ(rows.front(), rows.back());
    EXPECT_EQ(rows[0][0], 1.0);
    EXPECT_EQ(passed, text.size());
  }
}

TEST(RowReaderTest, ANumberThatIsTooLargeIsError6) {
  for (const char* field : {"1E999", "-1E999", "1:5E310", "1E999x"}) {
    EXPECT_EQ(test::RaisedNumber([&] { Read(std::string(field) + "\t1\n"); }), kOverflow) << field;
  }
}

}  // namespace
}  // namespace vorquill21
