#include <gtest/gtest.h>

#include <string>

#include "tests/platform/contract.hpp"
#include "tests/support/fake_platform.hpp"

namespace vorquill21 {
namespace {

using test::AllBytes;
using Implementation = test::Implementation<Locale*>;

Locale* Chosen() {
  static test::ChosenLocale locale;
  return &locale;
}

Locale* Native() {
  return &Platform::Native().GetLocale();
}

class LocaleContractTest : public ::testing::TestWithParam<Implementation> {
 protected:
  const Locale& locale_ = *GetParam().get();
};

TEST_P(LocaleContractTest, EveryByteOfASingleBytePageSurvivesTheRoundTrip) {
  // Long enough for every way through blocks and steps.
  std::string bytes;
  while (bytes.size() < 10'000) bytes += AllBytes() + "plain text";
  Text text = u"before";
  const std::size_t taken = locale_.AppendFromCodePage(bytes, text);
  if (!locale_.HasSingleBytes()) GTEST_SKIP() << "the code page of this system has multi-byte characters";
  EXPECT_EQ(taken, bytes.size());
  EXPECT_TRUE(text.starts_with(u"before"));
  std::string back = "before";
  locale_.AppendToCodePage(TextView(text).substr(6), back);
  EXPECT_EQ(back, "before" + bytes);
}

TEST_P(LocaleContractTest, AsciiKeepsItsCodes) {
  for (char16_t unit = 0; unit < 0x80; ++unit) {
    EXPECT_EQ(FromCodePage(locale_, std::string(1, static_cast<char>(unit))), Text(1, unit));
    EXPECT_EQ(ToCodePage(locale_, Text(1, unit)), std::string(1, static_cast<char>(unit)));
  }
}

TEST_P(LocaleContractTest, WhatThePageCannotHoldIsAQuestionMark) {
  if (ToCodePage(locale_, u"\u65E5").size() > 1) GTEST_SKIP() << "the code page of this system holds more";
  EXPECT_EQ(ToCodePage(locale_, u"a\u65E5b"), "a?b");
  EXPECT_EQ(ToCodePage(locale_, u"\uFFFD"), "?");
}

TEST_P(LocaleContractTest, NothingGivesNothing) {
  EXPECT_EQ(FromCodePage(locale_, ""), u"");
  EXPECT_EQ(ToCodePage(locale_, u""), "");
}

TEST_P(LocaleContractTest, NumbersTimesAndDatesHaveAForm) {
  EXPECT_TRUE(locale_.DecimalSeparator() == u'.' || locale_.DecimalSeparator() == u',');
  EXPECT_NE(locale_.ShortTime().find_first_of(u"0123456789"), Text::npos);
  EXPECT_NE(locale_.ShortDate().find_first_of(u"0123456789"), Text::npos);
}

INSTANTIATE_TEST_SUITE_P(Implementations, LocaleContractTest,
                         ::testing::Values(Implementation{"Chosen", Chosen},
                                           Implementation{"Native", Native}),
                         test::kNameOfImplementation);

}  // namespace
}  // namespace vorquill21
