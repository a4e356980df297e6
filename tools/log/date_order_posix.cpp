#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <string_view>

#include "log/moments.hpp"

namespace vorquill21::tool {

DateOrder DateOrderOfUser() {
  locale_t user = ::newlocale(LC_TIME_MASK, "", static_cast<locale_t>(nullptr));
  if (user == nullptr) user = ::newlocale(LC_TIME_MASK, "C", static_cast<locale_t>(nullptr));
  const std::string_view format = ::nl_langinfo_l(D_FMT, user);
  const auto positionOf = [format](std::string_view conversions) {
    return std::min(format.find_first_of(conversions), format.size());
  };
  const std::size_t year = positionOf("yYFG");
  const std::size_t month = positionOf("mbBhD");
  const std::size_t day = positionOf("de");
  ::freelocale(user);
  if (year < month && year < day) return DateOrder::kYearMonthDay;
  return day < month ? DateOrder::kDayMonthYear : DateOrder::kMonthDayYear;
}

}  // namespace vorquill21::tool
