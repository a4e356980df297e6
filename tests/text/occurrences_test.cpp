#include "vorquill21/text/occurrences.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace vorquill21 {
namespace {

using Positions = std::vector<std::size_t>;

/// All positions, overlapping ones too.
Positions AllPositions(TextView text, TextView sought) {
  Positions positions;
  Occurrences occurrences(text, sought);
  for (std::size_t at; (at = occurrences.Next(0)) != TextView::npos;) positions.push_back(at);
  return positions;
}

TEST(OccurrencesTest, FindsEveryOccurrenceOverlappingOnesToo) {
  EXPECT_EQ(AllPositions(u"abab", u"ab"), (Positions{0, 2}));
  EXPECT_EQ(AllPositions(u"ababa", u"aba"), (Positions{0, 2}));
  EXPECT_EQ(AllPositions(u"aaaa", u"aa"), (Positions{0, 1, 2}));
  EXPECT_EQ(AllPositions(u"axxb ab axb", u"axb"), (Positions{8}));
  EXPECT_EQ(AllPositions(u"", u"a"), Positions{});
  EXPECT_EQ(AllPositions(u"ab", u"abc"), Positions{});
}

TEST(OccurrencesTest, ComparesAllSixteenBitsOfAUnit) {
  const Text text{0x0120, 0x2001, 0x0020, 0xFFFF, 0x8020, 0x00A0, 0x7FFF, 0x0000};
  for (int repeats = 0; repeats < 2; ++repeats) {
    const Text longText = repeats == 0 ? text : Text(64, u'x') + text + Text(64, u'x');
    const std::size_t start = repeats == 0 ? 0 : 64;
    EXPECT_EQ(AllPositions(longText, Text{0x0020}), (Positions{start + 2}));
    EXPECT_EQ(AllPositions(longText, Text{0xFFFF}), (Positions{start + 3}));
    EXPECT_EQ(AllPositions(longText, Text{0x7FFF}), (Positions{start + 6}));
    EXPECT_EQ(AllPositions(longText, Text{0x0000}), (Positions{start + 7}));
  }
}

TEST(OccurrencesTest, FindsAnOccurrenceAtEveryPlaceOfTextsOfEveryLength) {
  for (std::size_t soughtLength = 1; soughtLength <= 4; ++soughtLength) {
    const Text sought = Text(u"abcd").substr(0, soughtLength);
    for (std::size_t length = soughtLength; length <= 200; ++length) {
      for (std::size_t place = 0; place + soughtLength <= length; ++place) {
        Text text(length, u'.');
        text.replace(place, soughtLength, sought);
        ASSERT_EQ(AllPositions(text, sought), Positions{place}) << length;
      }
    }
  }
}

TEST(OccurrencesTest, GoesOnBehindTheLastOneAndNotBeforeFrom) {
  const Text text(300, u'a');
  Occurrences occurrences(text, u"aaa");
  EXPECT_EQ(occurrences.Next(0), 0u);
  EXPECT_EQ(occurrences.Next(0), 1u);
  EXPECT_EQ(occurrences.Next(70), 70u);
  EXPECT_EQ(occurrences.Next(290), 290u);
  EXPECT_EQ(occurrences.Next(298), TextView::npos);
  EXPECT_EQ(occurrences.Next(0), TextView::npos);
}

}  // namespace
}  // namespace vorquill21
