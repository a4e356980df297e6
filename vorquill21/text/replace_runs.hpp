#pragma once

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

// Replacing consecutive occurrences of a text in one pass. Not exported. `find` is never empty.

/// True when `find` ends as it begins, so that two occurrences of it can overlap: "aa", "aba", "abab".
bool HasBorder(TextView find);

/// `text` with every doubled `find` replaced by a single one, over and over until none is left.
/// Cost: linear.
Text CollapseDoubled(TextView text, TextView find);

/// `text` with every run of consecutive occurrences of `find`, from left to right, replaced by one
/// `replacement`. Cost: see Occurrences.
Text ReplaceRuns(TextView text, TextView find, TextView replacement);

}  // namespace vorquill21
