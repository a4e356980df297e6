#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vorquill21 {

/// Goes through a text from one separator to the next: a delimiter, CR or LF. 64 bytes are searched at once,
/// so that the end of a field is known before anything is made of the field.
class SeparatorFinder {
 public:
  SeparatorFinder(std::string_view text, char delimiter) noexcept
      : delimiter_(delimiter), searched_(text.data()), ahead_(text.data()), end_(text.data() + text.size()) {}

  /// The next separator; the end of the text when there is none.
  const char* Next() noexcept {
    while (found_ == 0) {
      if (ahead_ == end_) return end_;
      SearchAhead();
    }
    const char* const separator = searched_ + std::countr_zero(found_);
    found_ &= found_ - 1;
    return separator;
  }

 private:
  static constexpr std::ptrdiff_t kStep = 64;

  void SearchAhead() noexcept {
    searched_ = ahead_;
    ahead_ += std::min(kStep, end_ - ahead_);
    found_ = ahead_ - searched_ == kStep ? FindAtOnce() : FindOneByOne();
  }

  /// One bit for each separator in [searched_, ahead_), the lowest for the first byte.
  std::uint64_t FindOneByOne() const noexcept {
    std::uint64_t found = 0;
    for (const char* at = ahead_; at != searched_;) {
      --at;
      const bool separates = *at == delimiter_ || *at == '\r' || *at == '\n';
      found = found << 1 | std::uint64_t{separates};
    }
    return found;
  }

#ifdef __SSE2__
  std::uint64_t FindAtOnce() const noexcept {
    constexpr std::ptrdiff_t kSixteen = 16;
    const __m128i delimiters = _mm_set1_epi8(delimiter_);
    const __m128i carriageReturns = _mm_set1_epi8('\r');
    const __m128i lineFeeds = _mm_set1_epi8('\n');
    std::uint64_t found = 0;
    for (std::ptrdiff_t from = 0; from < kStep; from += kSixteen) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(searched_ + from));
      const __m128i lineEnds =
          _mm_or_si128(_mm_cmpeq_epi8(bytes, carriageReturns), _mm_cmpeq_epi8(bytes, lineFeeds));
      const __m128i separators = _mm_or_si128(_mm_cmpeq_epi8(bytes, delimiters), lineEnds);
      found |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(separators))} << from;
    }
    return found;
  }
#else
  std::uint64_t FindAtOnce() const noexcept {
    return FindOneByOne();
  }
#endif

  char delimiter_;
  std::uint64_t found_ = 0;  // the separators in [searched_, ahead_) that are left
  const char* searched_;
  const char* ahead_;
  const char* end_;
};

}  // namespace vorquill21
