#include "vorquill21/platform/locale_windows.hpp"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

#include "vorquill21/platform/platform.hpp"

namespace vorquill21 {
namespace {

/// The runs of digits in `text`.
std::vector<Text> Numbers(TextView text) {
  std::vector<Text> numbers;
  bool inNumber = false;
  for (const char16_t unit : text) {
    const bool isDigit = unit >= u'0' && unit <= u'9';
    if (isDigit && !inNumber) numbers.emplace_back();
    if (isDigit) numbers.back() += unit;
    inNumber = isDigit;
  }
  return numbers;
}

/// The numbers that the locale says of `now`, the `part` of which did not change meanwhile.
std::vector<Text> NumbersOfNow(Text (WindowsLocale::*member)() const, WORD SYSTEMTIME::*part,
                               SYSTEMTIME& now) {
  const WindowsLocale locale;
  for (;;) {
    GetLocalTime(&now);
    const std::vector<Text> numbers = Numbers((locale.*member)());
    SYSTEMTIME after;
    GetLocalTime(&after);
    if (now.*part == after.*part) return numbers;
  }
}

TEST(WindowsLocaleTest, TheShortTimeIsHoursAndMinutes) {
  SYSTEMTIME now;
  const std::vector<Text> numbers = NumbersOfNow(&WindowsLocale::ShortTime, &SYSTEMTIME::wMinute, now);
  ASSERT_EQ(numbers.size(), 2u);
  EXPECT_EQ(numbers[1].size(), 2u);
  EXPECT_EQ(std::stoi(ToUtf8(numbers[1])), now.wMinute);
  const int hour = std::stoi(ToUtf8(numbers[0]));
  EXPECT_EQ(hour % 12, now.wHour % 12);
}

TEST(WindowsLocaleTest, TheShortDateIsDayMonthAndYear) {
  SYSTEMTIME now;
  const std::vector<Text> numbers = NumbersOfNow(&WindowsLocale::ShortDate, &SYSTEMTIME::wDay, now);
  ASSERT_EQ(numbers.size(), 3u);
  std::vector<int> found;
  for (const Text& number : numbers) found.push_back(std::stoi(ToUtf8(number)) % 100);
  std::vector<int> expected{now.wYear % 100, now.wMonth, now.wDay};
  std::ranges::sort(found);
  std::ranges::sort(expected);
  EXPECT_EQ(found, expected);
}

TEST(WindowsLocaleTest, TheNativeCodePageIsThatOfThe8BitCalls) {
  constexpr wchar_t kWide[] = L"caf\u00E9 \u0416 \u20AC";
  char bytes[32] = {};
  BOOL usedSubstitute = FALSE;
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, kWide, -1, bytes, sizeof bytes, "?", &usedSubstitute);
  EXPECT_EQ(ToCodePage(Platform::Native().GetLocale(), u"caf\u00E9 \u0416 \u20AC"), bytes);
}

}  // namespace
}  // namespace vorquill21
