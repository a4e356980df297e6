#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/for_each_shortage.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

using test::ForEachShortage;
using test::MemoryShortage;

constexpr TextView kLine = u"/an-argument-of-some-length \"another argument of some length\"";
constexpr TextView kWords = u"a word that is long, another word that is long, a third word that is long";

const Variant kArguments = BoundedArray<Variant>({Variant(), Variant(u"/an-argument-of-some-length")});
const BoundedArray<Variant> kCharacters({Variant(u"g")});

/// A call that needs memory.
using Call = void (*)(const CString& strings);

const std::vector<std::pair<std::string, Call>> kCalls = {
    {"CommandLineArgumentIndex",
     [](const CString& strings) { strings.CommandLineArgumentIndex(kArguments, u"/none"); }},
    {"CommandLineArgumentsParse",
     [](const CString& strings) { strings.CommandLineArgumentsParse(true, kLine); }},
    {"CommandLineArgumentsParseOfTheProcess",
     [](const CString& strings) { strings.CommandLineArgumentsParse(); }},
    {"ReplaceMulti", [](const CString& strings) { strings.ReplaceMulti(kWords, u"word", u"text"); }},
    {"ReplaceMultiOverlapping", [](const CString& strings) { strings.ReplaceMulti(kWords, u"tht", u"x"); }},
    {"RTrimMulti", [](const CString& strings) { strings.RTrimMulti(kWords, kCharacters); }},
    {"Split5", [](const CString& strings) { strings.Split5(kWords, u", "); }},
    {"Split5AtNothing", [](const CString& strings) { strings.Split5(kWords, u"", 100); }},
    {"Split5IgnoringCase",
     [](const CString& strings) { strings.Split5(kWords, u"WORD", -1, kCompareIgnoringCase); }},
    {"SplitMulti", [](const CString& strings) { strings.SplitMulti(kWords, u", "); }},
    {"SplitMultiWithoutEmptyElements",
     [](const CString& strings) { strings.SplitMulti(kWords, u", ", true); }},
    {"SplitMultiOfNothing", [](const CString& strings) { strings.SplitMulti(u"", u", ", true); }},
};

class CStringMemoryTest : public ::testing::TestWithParam<std::pair<std::string, Call>> {};
INSTANTIATE_TEST_SUITE_P(Every, CStringMemoryTest, ::testing::ValuesIn(kCalls),
                         [](const auto& test) { return test.param.first; });

TEST_P(CStringMemoryTest, AShortageIsErrorSeven) {
  test::FakePlatform fake;
  fake.process.commandLine = kLine;
  const CString strings(fake.platform);
  const int shortages = ForEachShortage([&](MemoryShortage& shortage) {
    const std::int32_t number = shortage.RaisedDuring([&] { GetParam().second(strings); });
    EXPECT_EQ(number, shortage.Hit() ? kOutOfMemory : 0);
  });
  EXPECT_GT(shortages, 0) << "memory is needed";
}

TEST(CStringSelfTestMemoryTest, AShortageFailsTheCheckThatItHitsOrIsErrorSeven) {
  test::FakePlatform fake;
  const CString strings(fake.platform);
  const auto runSelfTest = [&](MemoryShortage& shortage) {
    FailedTests failedTests;
    failedTests.reserve(10);
    const std::int32_t number = shortage.RaisedDuring([&] { strings.SelfTest_Main(failedTests); });
    EXPECT_EQ(shortage.Hit(), number != 0 || !failedTests.empty());
    return number;
  };
  ForEachShortage([&](MemoryShortage& shortage) { EXPECT_EQ(runSelfTest(shortage), 0); }, {1});
  const auto expectErrorSeven = [&](MemoryShortage& shortage) {
    const std::int32_t number = runSelfTest(shortage);
    EXPECT_TRUE(number == 0 || number == kOutOfMemory) << number;
  };
  ForEachShortage(expectErrorSeven, {2, 3, 1000});
}

}  // namespace
}  // namespace vorquill21
