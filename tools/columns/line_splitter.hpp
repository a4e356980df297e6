#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace vorquill21::tool {

/// Cuts bytes that arrive in pieces into lines, which end at CR LF, at a lone CR or at a lone LF. At most one
/// line is held.
class LineSplitter {
 public:
  /// Calls `take(line)` for each line that ends within what was added so far. Every byte is looked at a fixed
  /// number of times, whatever the lines end with.
  template <typename Take>
  void Add(std::string_view bytes, Take take) {
    std::size_t begin = skipsLineFeed_ && bytes.starts_with('\n') ? 1 : 0;
    if (!bytes.empty()) skipsLineFeed_ = false;
    std::size_t lineFeed = bytes.find('\n', begin);
    std::size_t carriageReturn = bytes.find('\r');
    while (lineFeed != kNone || carriageReturn != kNone) {
      const std::size_t end = std::min(lineFeed, carriageReturn);
      TakeLine(bytes.substr(begin, end - begin), take);
      begin = end + 1;
      if (end == carriageReturn) {
        carriageReturn = bytes.find('\r', begin);
        skipsLineFeed_ = begin == bytes.size();
        if (lineFeed == begin) ++begin;
      }
      if (lineFeed < begin) lineFeed = bytes.find('\n', begin);
    }
    held_.append(bytes.substr(begin));
  }

  /// The last line needs no end.
  template <typename Take>
  void Finish(Take take) {
    if (!held_.empty()) TakeLine({}, take);
  }

 private:
  template <typename Take>
  void TakeLine(std::string_view rest, Take& take) {
    if (held_.empty()) return take(rest);
    held_.append(rest);
    take(std::string_view(held_));
    held_.clear();
  }

  static constexpr std::size_t kNone = std::string_view::npos;

  std::string held_;
  bool skipsLineFeed_ = false;
};

}  // namespace vorquill21::tool
