#include "vorquill21/platform/code_page.hpp"

#include <gtest/gtest.h>

#include <string>

namespace vorquill21 {
namespace {

TEST(CodePageTest, Windows1252StandsForTheseUnits) {
  const CodePageUnits units = Windows1252Units();
  EXPECT_EQ(units['A'], u'A');
  EXPECT_EQ(units[0x80], u'\u20AC');
  EXPECT_EQ(units[0x8A], u'\u0160');
  EXPECT_EQ(units[0x9F], u'\u0178');
  EXPECT_EQ(units[0xA0], u'\u00A0');
  EXPECT_EQ(units[0xFF], u'\u00FF');
  for (const int undefined : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) {
    EXPECT_EQ(units[static_cast<std::size_t>(undefined)], undefined);
  }
}

TEST(CodePageTest, AllBytesOfWindows1252SurviveTheRoundTrip) {
  const CodePage page(Windows1252Units());
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  Text text;
  page.AppendText(bytes, text);
  EXPECT_EQ(text.size(), 256u);
  std::string back;
  page.AppendBytes(text, back);
  EXPECT_EQ(back, bytes);
}

TEST(CodePageTest, OneUnitAmongAsciiIsConvertedAtEveryPositionOfEveryLength) {
  const CodePage page(Windows1252Units());
  for (std::size_t length = 1; length < 70; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      std::string bytes(length, 'a');
      Text expected(length, u'a');
      bytes[at] = '\x80';
      expected[at] = u'\u20AC';
      Text text = u">";
      page.AppendText(bytes, text);
      EXPECT_EQ(text, u">" + expected);
      std::string back = ">";
      page.AppendBytes(expected, back);
      EXPECT_EQ(back, ">" + bytes);
    }
  }
}

TEST(CodePageTest, EveryUnitGoesToItsByteOrToTheQuestionMark) {
  const CodePageUnits units = Windows1252Units();
  const CodePage page(units);
  Text text;
  for (unsigned unit = 0; unit < 0x10000; ++unit) text.append(1, static_cast<char16_t>(unit));
  std::string bytes;
  page.AppendBytes(text, bytes);
  ASSERT_EQ(bytes.size(), text.size());
  int held = 0;
  for (std::size_t unit = 0; unit < bytes.size(); ++unit) {
    const bool holds = units[static_cast<unsigned char>(bytes[unit])] == unit;
    EXPECT_TRUE(holds || bytes[unit] == '?') << unit;
    held += holds ? 1 : 0;
  }
  EXPECT_EQ(held, 256);
}

TEST(CodePageTest, APageWithoutAsciiIsFollowedToo) {
  CodePageUnits units = Windows1252Units();
  units['a'] = u'\u0430';
  units[0xE0] = u'\u0430';
  const CodePage page(units);
  Text text;
  page.AppendText(std::string(20, 'a'), text);
  EXPECT_EQ(text, Text(20, u'\u0430'));
  std::string bytes;
  page.AppendBytes(text + Text(20, u'a'), bytes);
  EXPECT_EQ(bytes, std::string(20, 'a') + std::string(20, '?'));
}

}  // namespace
}  // namespace vorquill21
