#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log/moments.hpp"
#include "output/result.hpp"

namespace vorquill21::tool {

/// A line of a log, and what it is: "banner", "started", "entry", "warning", "error" (a warning with the
/// error that was handled), "stopped" or "blank".
struct LogLine {
  std::int64_t number = 0;  ///< counted from 1
  std::string kind;
  std::int64_t period = 0;  ///< logging periods count from 1; 0 before the first
  std::string started;      ///< when the period started, as the log says it
  std::string text;         ///< in UTF-8
};

/// The words for the kinds.
const std::vector<std::string>& LogKinds();

/// Tells for one line after the other what it is.
class LogReader {
 public:
  /// `bytes` are a line without its end.
  LogLine Take(std::string_view bytes);

 private:
  std::string KindOf(std::string_view text);

  std::int64_t number_ = 0;
  std::int64_t period_ = 0;
  std::string started_;
  static constexpr int kNoBanner = -1;

  int bannerLines_ = kNoBanner;  ///< seen since the rule that began a banner
};

/// The lines that the user wants to see.
struct LogFilter {
  std::vector<std::string> kinds;
  std::string text;
  std::int64_t period = 0;  ///< 0 for all
  std::optional<Moment> since;
  std::optional<Moment> until;
  DateOrder dateOrder = DateOrder::kDayMonthYear;

  bool Accepts(const LogLine& line) const;
};

}  // namespace vorquill21::tool
