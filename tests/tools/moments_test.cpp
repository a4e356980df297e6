#include "log/moments.hpp"

#include <gtest/gtest.h>

namespace vorquill21::tool {
namespace {

TEST(MomentTest, ReadsTheStartOfAPeriodInEachOrderOfDates) {
  struct {
    const char* text;
    DateOrder order;
    Moment moment;
  } const cases[] = {
      {"10:05 21/11/2026", DateOrder::kDayMonthYear, {2026, 11, 21, 10, 5}},
      {"10:05 21.11.26", DateOrder::kDayMonthYear, {2026, 11, 21, 10, 5}},
      {"22:15 11/21/26", DateOrder::kMonthDayYear, {2026, 11, 21, 22, 15}},
      {"10:15 PM 11/21/2026", DateOrder::kMonthDayYear, {2026, 11, 21, 22, 15}},
      {"12:15 AM 11/21/2026", DateOrder::kMonthDayYear, {2026, 11, 21, 0, 15}},
      {"12:15 pm 11/21/2026", DateOrder::kMonthDayYear, {2026, 11, 21, 12, 15}},
      {"07:00 2026-11-21", DateOrder::kYearMonthDay, {2026, 11, 21, 7, 0}},
  };
  for (const auto& c : cases) EXPECT_EQ(MomentOfLog(c.text, c.order), c.moment) << c.text;
}

TEST(MomentTest, KnowsWhatIsNoStartOfAPeriod) {
  for (const char* const text : {"", "10:05", "10:05 21/13/2026", "10:61 21/11/2026", "25:05 21/11/2026",
                                 "10:05 0/11/2026", "10:05 21/11/2026 1", "99999999999:05 21/11/2026"}) {
    EXPECT_FALSE(MomentOfLog(text, DateOrder::kDayMonthYear)) << text;
  }
}

TEST(MomentTest, ReadsTheTimesOfUsers) {
  EXPECT_EQ(MomentOfUser("2026-11-21"), (Moment{2026, 11, 21, 0, 0}));
  EXPECT_EQ(MomentOfUser("2026-11-21 10:05"), (Moment{2026, 11, 21, 10, 5}));
  EXPECT_EQ(MomentOfUser("2026-11-21T10:05"), (Moment{2026, 11, 21, 10, 5}));
  for (const char* const text : {"", "yesterday", "2026-11", "2026-13-01", "2026/11/21", "2026-11-21 10"}) {
    EXPECT_FALSE(MomentOfUser(text)) << text;
  }
}

}  // namespace
}  // namespace vorquill21::tool
