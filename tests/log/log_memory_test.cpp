#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/for_each_shortage.hpp"
#include "vorquill21/files/os_utils.hpp"
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
  COSUtils osUtils{fake.platform};
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
    {"Connect", [](Setting& setting) { setting.log.EntryLogged.Connect([](TextView, ELogAction) {}); }},
    {"GetSpecialFolderPath",
     [](Setting& setting) {
       Text path;
       setting.osUtils.GetSpecialFolderPath(-1, path);
     }},
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

}  // namespace
}  // namespace vorquill21
