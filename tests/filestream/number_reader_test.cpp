#include "vorquill21/filestream/number_reader.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <vector>

namespace vorquill21 {
namespace {

/// Where a separator can stand in a text, "#" being its place.
std::vector<TextView> Patterns() {
  return {u"1#5",  u"#5",    u"1#",   u" 1#5 ", u"-1#5",   u"1#5E2", u"1E#2",  u"#",      u"##",
          u"1.5",  u"1,5",   u"1#.5", u"1#,5",  u"1##5",   u"12345", u"#12",   u"1 5",    u"\t15\r\n",
          u"1.5#", u"1D+02", u"1d-2", u"+1#5",  u"1#5e+2", u"",      u"1#2#3", u"00#500#"};
}

TEST(ReplaceAllTest, EveryOccurrenceIsReplacedAndNothingElse) {
  const struct {
    TextView text, sought, replacement, expected;
  } rows[] = {
      {u"", u".", u",", u""},
      {u"no dot", u".", u",", u"no dot"},
      {u".", u".", u"", u""},
      {u"1.2.3", u".", u",", u"1,2,3"},
      {u"ab..cd.", u".", u"::", u"ab::::cd::"},
      {u"1::2::34", u"::", u".", u"1.2.34"},
      {u"1:::2", u"::", u".", u"1.:2"},
      {u"aaa", u"a", u"aa", u"aaaaaa"},
  };
  for (const auto& row : rows) EXPECT_EQ(ReplaceAll(row.text, row.sought, row.replacement), row.expected);
}

TEST(NumberReaderTest, ATextSpellsTheNumberThatItSpellsWithTheUsersSeparatorInPlaceOfTheOther) {
  for (const char16_t user : {u'.', u','}) {
    for (char16_t written = 1; written < 0x100; ++written) {
      const Text separator(1, written);
      const NumberReader read(separator, user);
      for (const TextView pattern : Patterns()) {
        const Text text = ReplaceAll(pattern, u"#", separator);
        const double expected = TextToNumber(ReplaceAll(text, separator, Text(1, user)), user).value_or(0.0);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read(text)), std::bit_cast<std::uint64_t>(expected))
            << ToUtf8(text) << " with " << static_cast<int>(written);
      }
    }
  }
}

TEST(NumberReaderTest, ASeparatorThatBelongsToNumbersHasNoNumberAtTheFrontOfATextSoThatTheWholeIsRead) {
  const Text text = u"12;5 and more";
  const char16_t* const begin = text.data();
  const char16_t* const end = begin + text.size();
  for (const char16_t strange : {u'0', u'9', u'+', u'-', u'E', u'e', u'D', u'd', u' ', u'\t', u'\r', u'\n'}) {
    const Text separator(1, strange);
    EXPECT_EQ(NumberReader(separator, u'.').ReadPrefix(begin, end).end, begin) << static_cast<int>(strange);
  }
  EXPECT_EQ(NumberReader(u";;", u'.').ReadPrefix(begin, end).end, begin);
  const auto [number, rest] = NumberReader(u";", u'.').ReadPrefix(begin, end);
  EXPECT_EQ(number, 12.5);
  EXPECT_EQ(rest, begin + 4);
}

}  // namespace
}  // namespace vorquill21
