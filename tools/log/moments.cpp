#include "log/moments.hpp"

#include <algorithm>
#include <cctype>
#include <vector>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {
namespace {

/// The runs of digits in a text.
std::vector<int> NumbersIn(std::string_view text) {
  constexpr int kLargest = 100'000'000;
  std::vector<int> numbers;
  bool isInNumber = false;
  for (const char character : text) {
    const bool isDigit = std::isdigit(static_cast<unsigned char>(character)) != 0;
    if (isDigit && !isInNumber) numbers.push_back(0);
    if (isDigit && numbers.back() < kLargest) numbers.back() = 10 * numbers.back() + (character - '0');
    isInNumber = isDigit;
  }
  return numbers;
}

bool Holds(std::string_view text, TextView sought) {
  return FindIgnoringCase(FromUtf8(text), sought) != TextView::npos;
}

std::optional<Moment> Valid(const Moment& moment) {
  const auto [year, month, day, hour, minute] = moment;
  const bool isDate = year >= 1 && month >= 1 && month <= 12 && day >= 1 && day <= 31;
  return isDate && hour <= 24 && minute <= 59 ? std::optional(moment) : std::nullopt;
}

}  // namespace

DateOrder DateOrderNamed(std::string_view name) {
  if (name == "mdy") return DateOrder::kMonthDayYear;
  return name == "ymd" ? DateOrder::kYearMonthDay : DateOrder::kDayMonthYear;
}

std::optional<Moment> MomentOfLog(std::string_view text, DateOrder order) {
  constexpr int kNoon = 12;
  constexpr int kCentury = 100;
  const std::vector<int> numbers = NumbersIn(text);
  if (numbers.size() != 5) return std::nullopt;
  int hour = numbers[0];
  if (Holds(text, u"PM") && hour < kNoon) hour += kNoon;
  if (Holds(text, u"AM") && hour == kNoon) hour = 0;
  int year = numbers[order == DateOrder::kYearMonthDay ? 2 : 4];
  if (year < kCentury) year += 2000;
  const int month = numbers[order == DateOrder::kMonthDayYear ? 2 : 3];
  const int day = numbers[order == DateOrder::kDayMonthYear ? 2 : order == DateOrder::kMonthDayYear ? 3 : 4];
  return Valid({year, month, day, hour, numbers[1]});
}

std::optional<Moment> MomentOfUser(std::string_view text) {
  constexpr std::string_view kCharacters = "0123456789-:T ";
  const std::vector<int> numbers = NumbersIn(text);
  const bool isForm = text.find_first_not_of(kCharacters) == std::string_view::npos;
  if (!isForm || (numbers.size() != 3 && numbers.size() != 5)) return std::nullopt;
  Moment moment{};
  std::ranges::copy(numbers, moment.begin());
  return Valid(moment);
}

}  // namespace vorquill21::tool
