#include "columns/layout.hpp"

#include <gtest/gtest.h>

#include "columns/fields.hpp"

namespace vorquill21::tool {
namespace {

struct LayoutCase {
  const char* text;
  const char* delimiter;
  std::int32_t headerRow;
  std::int32_t firstValueRow;
  std::int32_t columns;
  bool hasHeader;
};

TEST(SniffTest, FindsDelimiterHeaderAndFirstValueRow) {
  const LayoutCase cases[] = {
      {"a\tb\n1\t2\n3\t4\n", "\t", 1, 2, 2, true},
      {"a;b\r\n1,5;2,5\r\n3;4\r\n", ";", 1, 2, 2, true},
      {"a,b,c\r1,2,3\r4,5,6", ",", 1, 2, 3, true},
      {"a|b\n1|2\n", "|", 1, 2, 2, true},
      {"a b\n1  2\n 3 4\n", " ", 1, 2, 2, true},
      {"remark\n\na,b\nm,s\n1,2\n3,4\n", ",", 3, 5, 2, true},
      {"1,2\n3,4\n5,6\n", ",", 1, 2, 2, false},
      {"value\n1\n2\n", "\t", 1, 2, 1, true},
      {"a,b\n1,2\n\n3,4\n5,6\n7,8\n", ",", 1, 2, 2, true},
      {"a,b\n1,1e999\n2,3\n", ",", 1, 2, 2, true},
  };
  for (const LayoutCase& c : cases) {
    const std::optional<Layout> layout = Sniff(c.text);
    ASSERT_TRUE(layout) << c.text;
    EXPECT_EQ(layout->delimiter, c.delimiter) << c.text;
    EXPECT_EQ(layout->headerRow, c.headerRow) << c.text;
    EXPECT_EQ(layout->firstValueRow, c.firstValueRow) << c.text;
    EXPECT_EQ(layout->columns, c.columns) << c.text;
    EXPECT_EQ(layout->hasHeader, c.hasHeader) << c.text;
  }
}

TEST(SniffTest, FindsNothingWhereThereAreNoNumbers) {
  for (const char* const text : {"", "\n\n", "only\ntext\n", "7", "a,b\nc,d\n"})
    EXPECT_FALSE(Sniff(text)) << text;
}

TEST(FieldKindTest, TellsHowTheImporterTakesAField) {
  struct {
    const char* field;
    FieldKind kind;
  } const cases[] = {
      {"1", FieldKind::kNumber},           {"-2.5", FieldKind::kNumber},
      {"+.5", FieldKind::kNumber},         {"5.", FieldKind::kNumber},
      {"1E-3", FieldKind::kNumber},        {" 7 ", FieldKind::kNumber},
      {"12:30", FieldKind::kNumber},       {"3.5kg", FieldKind::kPartlyNumber},
      {"1.2.3", FieldKind::kPartlyNumber}, {"1:2:3", FieldKind::kPartlyNumber},
      {"n/a", FieldKind::kNoNumber},       {".", FieldKind::kNoNumber},
      {"-", FieldKind::kNoNumber},         {"", FieldKind::kNoNumber},
      {"1e999", FieldKind::kTooLarge},     {"-1e999", FieldKind::kTooLarge},
  };
  for (const auto& c : cases) EXPECT_EQ(KindOf(c.field), c.kind) << c.field;
}

}  // namespace
}  // namespace vorquill21::tool
