#pragma once

#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// `text` with every occurrence of `sought`, which is not empty, replaced.
Text ReplaceAll(TextView text, TextView sought, TextView replacement);

/// Reads numbers that were written with one decimal separator in the notation of another: every occurrence of
/// the written separator, a text that is not empty, counts as the user's separator.
class NumberReader {
 public:
  /// `writtenSeparator` must outlive the object.
  NumberReader(TextView writtenSeparator, char16_t userSeparator) noexcept
      : writtenSeparator_(writtenSeparator),
        userSeparator_(userSeparator),
        isStrange_(writtenSeparator.size() != 1 || BelongsToNumbers(writtenSeparator[0])) {}

  /// The number that the text spells after the replacement; 0 when it spells none. Error 7 when memory runs
  /// out (only a strange separator takes any).
  double operator()(TextView text) const {
    if (isStrange_) return WithReplacement(text);
    if (const auto number = TextToNumber(text, writtenSeparator_[0])) return *number;
    // A text that holds both separators would hold two of the user's: no number either way.
    if (writtenSeparator_[0] == userSeparator_) return 0.0;
    return TextToNumber(text, userSeparator_).value_or(0.0);
  }

  /// Reads the longest number that stands at `begin` in the written notation, as ParseNumber does; none where
  /// the separator is a strange one.
  ParsedNumber<char16_t> ReadPrefix(const char16_t* begin, const char16_t* end) const noexcept {
    if (isStrange_) return {0.0, begin};
    return ParseNumber(begin, end, writtenSeparator_[0]);
  }

 private:
  /// Whether the character can stand in or around a number beside its separator.
  static constexpr bool BelongsToNumbers(char16_t unit) {
    return (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-' || unit == u'E' || unit == u'e' ||
           unit == u'D' || unit == u'd' || unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
  }

  double WithReplacement(TextView text) const;

  TextView writtenSeparator_;
  char16_t userSeparator_;
  bool isStrange_;  // a part of numbers, or several characters
};

}  // namespace vorquill21
