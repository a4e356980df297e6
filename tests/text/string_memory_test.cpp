#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/filestream/memory_shortage.hpp"
#include "tests/support/fake_platform.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {
namespace {

using test::MemoryShortage;
using test::RaisedNumber;

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
  for (const int count : {1, 2, 1000}) {
    int first = 1;
    for (bool isHit = true; isHit; ++first) {
      const MemoryShortage shortage(first, count);
      const std::int32_t number = RaisedNumber([&] { GetParam().second(strings); });
      isHit = MemoryShortage::Hit();
      EXPECT_EQ(number, isHit ? kOutOfMemory : 0) << first << ", " << count;
    }
    EXPECT_GT(first, 2) << "memory is needed";
  }
}

TEST(CStringSelfTestMemoryTest, AShortageFailsTheCheckThatItHitsOrIsErrorSeven) {
  test::FakePlatform fake;
  const CString strings(fake.platform);
  for (const int count : {1, 2, 3, 1000}) {
    bool isHit = true;
    for (int first = 1; isHit; ++first) {
      FailedTests failedTests;
      failedTests.reserve(10);
      std::int32_t number = 0;
      {
        const MemoryShortage shortage(first, count);
        number = RaisedNumber([&] { strings.SelfTest_Main(failedTests); });
        isHit = MemoryShortage::Hit();
      }
      EXPECT_TRUE(number == 0 || (number == kOutOfMemory && count > 1)) << number;
      EXPECT_EQ(isHit, number != 0 || !failedTests.empty()) << first << ", " << count;
    }
  }
}

}  // namespace
}  // namespace vorquill21
