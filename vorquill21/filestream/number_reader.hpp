#pragma once

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// `text` with every occurrence of `sought`, which is not empty, replaced.
Text ReplaceAll(TextView text, TextView sought, TextView replacement);

/// Reads numbers that were written with one decimal separator in the notation of another: every occurrence of
/// the written separator, a text that is not empty, counts as the user's separator.
class NumberReader {
 public:
  /// `writtenSeparator` must outlive the object.
  NumberReader(TextView writtenSeparator, char16_t userSeparator) noexcept;

  /// The number that the text spells after the replacement; 0 when it spells none. Error 7 when memory runs
  /// out (only a strange separator takes any).
  double operator()(TextView text) const;

 private:
  TextView writtenSeparator_;
  char16_t userSeparator_;
  bool isStrange_;  // a part of numbers or several characters
};

}  // namespace vorquill21
