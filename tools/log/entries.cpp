#include "log/entries.hpp"

#include <algorithm>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {
namespace {

constexpr std::string_view kStarted = "Log started at ";
constexpr std::string_view kStopped = "Log stopped. Time from log start = ";
constexpr std::string_view kWarning = "* Warning: ";
constexpr std::string_view kError = " Error: ";

bool IsRule(std::string_view text) {
  constexpr std::size_t kHyphens = 59;
  return text.size() == kHyphens && text.find_first_not_of('-') == std::string_view::npos;
}

}  // namespace

const std::vector<std::string>& LogKinds() {
  static const std::vector<std::string> kinds{"banner", "started", "entry", "warning",
                                              "error",  "stopped", "blank"};
  return kinds;
}

LogLine LogReader::Take(std::string_view bytes) {
  LogLine line;
  line.number = ++number_;
  line.text = ToUtf8(FromCodePage(Platform::Native().GetLocale(), bytes));
  line.kind = KindOf(line.text);
  line.period = period_;
  line.started = started_;
  return line;
}

/// Between two rules stand the title and the start of a period.
std::string LogReader::KindOf(std::string_view text) {
  constexpr int kMostBannerLines = 2;
  if (IsRule(text)) {
    if (bannerLines_ == kNoBanner) {
      ++period_;
      started_.clear();
    }
    bannerLines_ = bannerLines_ == kNoBanner ? 0 : kNoBanner;
    return "banner";
  }
  if (bannerLines_ != kNoBanner && ++bannerLines_ > kMostBannerLines)
    bannerLines_ = kNoBanner;  // a log that was cut
  if (bannerLines_ != kNoBanner) {
    if (!text.starts_with(kStarted)) return "banner";
    started_ = text.substr(kStarted.size());
    return "started";
  }
  if (text.find_first_not_of(' ') == std::string_view::npos) return "blank";
  if (text.starts_with(kStopped)) return "stopped";
  if (!text.starts_with(kWarning)) return "entry";
  return text.find(kError) == std::string_view::npos ? "warning" : "error";
}

bool LogFilter::Accepts(const LogLine& line) const {
  if (!kinds.empty() && std::ranges::find(kinds, line.kind) == kinds.end()) return false;
  if (!text.empty() && FindIgnoringCase(FromUtf8(line.text), FromUtf8(text)) == TextView::npos) return false;
  if (period != 0 && line.period != period) return false;
  if (!since && !until) return true;
  const std::optional<Moment> started = MomentOfLog(line.started, dateOrder);
  return started && (!since || *since <= *started) && (!until || *started <= *until);
}

}  // namespace vorquill21::tool
