#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// Finds the occurrences of one text in another from left to right, many units at a time. Not exported.
///
/// Cost: linear in the length of the text as long as few of the places where the first and the last unit of
/// the sought text agree are no occurrence of it; at most the product of both lengths.
class Occurrences {
 public:
  /// Both texts must outlive the object; `sought` is not empty.
  Occurrences(TextView text, TextView sought) noexcept
      : text_(text),
        sought_(sought),
        startsEnd_(text.size() < sought.size() ? 0 : text.size() - sought.size() + 1) {}

  /// 0-based position of the first occurrence behind the one that was returned last and not before `from`;
  /// `TextView::npos` when there is none.
  std::size_t Next(std::size_t from) noexcept {
    for (;;) {
      while (candidates_ == 0) {
        if (blockEnd_ >= startsEnd_) return TextView::npos;
        blockStart_ = blockEnd_;
        blockEnd_ += std::min(kBlock, startsEnd_ - blockStart_);
        candidates_ = Candidates(text_.substr(blockStart_), sought_, blockEnd_ - blockStart_);
      }
      const std::size_t at = blockStart_ + static_cast<std::size_t>(std::countr_zero(candidates_));
      candidates_ &= candidates_ - 1;
      if (at >= from && (sought_.size() <= 2 || text_.substr(at).starts_with(sought_))) return at;
    }
  }

 private:
  static constexpr std::size_t kBlock = 64;

  /// Bit i tells whether an occurrence of `sought` can start at text[i], by its first and its last unit; for
  /// the first `count` places, kBlock at most. (No access to the object: its members stay in registers.)
  static std::uint64_t Candidates(TextView text, TextView sought, std::size_t count) noexcept;

  TextView text_;
  TextView sought_;
  std::size_t startsEnd_;  // the places where an occurrence can start are 0 to startsEnd_ - 1
  std::size_t blockStart_ = 0;
  std::size_t blockEnd_ = 0;
  std::uint64_t candidates_ = 0;  // bit i: for the place blockStart_ + i
};

}  // namespace vorquill21
