#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace vorquill21::tool {

/// Year, month, day, hour, minute: moments compare as these do.
using Moment = std::array<int, 5>;

/// In which order dates name day, month and year.
enum class DateOrder { kDayMonthYear, kMonthDayYear, kYearMonthDay };

/// The order of the user's locale.
DateOrder DateOrderOfUser();

/// The order called "dmy", "mdy" or "ymd".
DateOrder DateOrderNamed(std::string_view name);

/// The moment of a text such as "10:05 21/11/2026" or "10:05 PM 11/21/26", as the log writes the start of a
/// period: the time first. Years of two digits are those from 2000 on. Nothing when the text is none.
std::optional<Moment> MomentOfLog(std::string_view text, DateOrder order);

/// The moment of "2026-11-21", "2026-11-21 10:05" or "2026-11-21T10:05"; nothing when the text is none.
std::optional<Moment> MomentOfUser(std::string_view text);

}  // namespace vorquill21::tool
