#include "vorquill21/platform/wildcard.hpp"

#include <gtest/gtest.h>

namespace vorquill21 {
namespace {

struct Case {
  TextView name;
  TextView pattern;
  bool matches;
};

TEST(WildcardTest, AreTheStarAndTheQuestionMark) {
  EXPECT_TRUE(HasWildcards(u"a*"));
  EXPECT_TRUE(HasWildcards(u"?a"));
  EXPECT_FALSE(HasWildcards(u"a[b].txt"));
  EXPECT_FALSE(HasWildcards(u""));
}

TEST(WildcardTest, MatchWholeNames) {
  constexpr Case kCases[] = {
      {u"", u"", true},
      {u"", u"*", true},
      {u"", u"?", false},
      {u"a", u"", false},
      {u"test1.tt1", u"*.tt1", true},
      {u"test1.tt1x", u"*.tt1", false},
      {u"test1.tt", u"*.tt1", false},
      {u".tt1", u"*.tt1", true},
      {u"a.b.tt1", u"*.tt1", true},
      {u"a.tt1.tt1", u"*.tt1", true},
      {u"name", u"*.*", false},
      {u"name.", u"*.*", true},
      {u"ab", u"a?", true},
      {u"a", u"a?", false},
      {u"abc", u"a?", false},
      {u"abc", u"?b?", true},
      {u"abcbd", u"a*b?", true},
      {u"aXbXc", u"a*b*c", true},
      {u"aXcXb", u"a*b*c", false},
      {u"abc", u"***", true},
      {u"abc", u"abc***", true},
      {u"abc", u"abcd*", false},
  };
  for (const Case& each : kCases) {
    EXPECT_EQ(MatchesWildcards(each.name, each.pattern), each.matches)
        << ToUtf8(each.name) << " by " << ToUtf8(each.pattern);
  }
}

TEST(WildcardTest, IgnoreCase) {
  EXPECT_TRUE(MatchesWildcards(u"DATA.TT1", u"data.*"));
  EXPECT_TRUE(MatchesWildcards(u"\u00E4.txt", u"\u00C4*"));
}

TEST(WildcardTest, TakeBracketsAsTheyStand) {
  EXPECT_TRUE(MatchesWildcards(u"[a]1", u"[a]*"));
  EXPECT_FALSE(MatchesWildcards(u"a1", u"[a]*"));
}

TEST(WildcardTest, StayQuickOnManyStars) {
  const Text name(2000, u'a');
  Text pattern;
  for (int i = 0; i < 500; ++i) pattern += u"*a";
  EXPECT_TRUE(MatchesWildcards(name, pattern));
  EXPECT_FALSE(MatchesWildcards(name, pattern + u"b"));
}

}  // namespace
}  // namespace vorquill21
