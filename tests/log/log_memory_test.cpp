#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/for_each_shortage.hpp"
#include "vorquill21/log/log.hpp"

namespace vorquill21 {
namespace {

using test::MemoryShortage;

constexpr TextView kPath = u"/library/a log whose name needs memory.txt";

/// A log that was initialised and one that was not.
struct Setting {
  Setting() { log.Initialise(kPath, -1, true, true, title); }

  const Variant title = u"a title that needs memory";
  test::FakePlatform fake;
  CLog log{fake.platform};
  CLog otherLog{fake.platform};
};

/// A step that is short of memory, and the number that it raises with enough of it, 0 when none.
struct Step {
  std::string name;
  void (*run)(Setting&);
  std::int32_t number = 0;
};

const std::vector<Step> kSteps = {
    {"Initialise",
     [](Setting& setting) { setting.otherLog.Initialise(kPath, -1, true, true, setting.title); }},
    {"StartLogging", [](Setting& setting) { setting.log.StartLogging(); }},
    {"AddEntry",
     [](Setting& setting) { setting.log.AddEntry(u"an entry\tthat needs memory\r\n", logException); }},
    {"AddEntryUninitialised", [](Setting& setting) { setting.otherLog.AddEntry(u"an entry", logNormal); },
     1000},
    {"StopLogging", [](Setting& setting) { setting.log.StopLogging(); }},
    {"View", [](Setting& setting) { setting.log.View(); }},
    {"ViewUninitialised", [](Setting& setting) { setting.otherLog.View(); }, 1000},
    {"Text", [](Setting& setting) { setting.log.Text(); }},
    {"Filepath", [](Setting& setting) { setting.log.Filepath(); }},
    {"Making", [](Setting& setting) { CLog(setting.fake.platform).Filepath(); }},
    {"MakingAnEvent", [](Setting&) { LogEvent().Disconnect(0); }},
    {"Connect", [](Setting& setting) { setting.log.EntryLogged.Connect([](TextView, ELogAction) {}); }},
};

class MemoryOfLogsTest : public ::testing::TestWithParam<Step> {};
INSTANTIATE_TEST_SUITE_P(Every, MemoryOfLogsTest, ::testing::ValuesIn(kSteps),
                         [](const auto& test) { return test.param.name; });

TEST_P(MemoryOfLogsTest, AShortageRaisesNothingButErrorSeven) {
  test::ForEachShortage([&](MemoryShortage& shortage) {
    Setting setting;
    const std::int32_t number = shortage.RaisedDuring([&] { GetParam().run(setting); });
    EXPECT_TRUE(number == GetParam().number || (shortage.Hit() && number == kOutOfMemory)) << number;
    EXPECT_EQ(setting.fake.files.OpenReaders(), 0);
  });
}

TEST(MemoryOfLogsTest, WhatRaisesNothingButError1000RaisesNothingDuringAShortage) {
  const auto raisesNothing = [](void (*run)(Setting&)) {
    test::ForEachShortage([&](MemoryShortage& shortage) {
      Setting setting;
      EXPECT_NO_THROW(shortage.During([&] { run(setting); }));
    });
  };
  raisesNothing([](Setting& setting) { setting.log.StartLogging(); });
  raisesNothing([](Setting& setting) { setting.log.View(); });
  raisesNothing([](Setting& setting) { setting.log.Text(); });
}

TEST(MemoryOfLogsTest, EveryHandlerIsCalledOrNoneWhenMemoryRunsOut) {
  int writtenWithoutCall = 0;
  const auto addEntry = [&](MemoryShortage& shortage) {
    Setting setting;
    int calls = 0;
    for (int i = 0; i < 3; ++i) setting.log.EntryLogged.Connect([&](TextView, ELogAction) { ++calls; });
    const std::int32_t number =
        shortage.RaisedDuring([&] { setting.log.AddEntry(u"an entry that needs memory", logNormal); });
    EXPECT_TRUE(number == 0 || number == kOutOfMemory) << number;
    EXPECT_TRUE(calls == 3 || (shortage.Hit() && calls == 0)) << calls;
    if (calls == 0 && setting.log.Text() == u"an entry that needs memory") ++writtenWithoutCall;
  };
  test::ForEachShortage(addEntry, {1});
  EXPECT_EQ(writtenWithoutCall, 1);
}

}  // namespace
}  // namespace vorquill21
