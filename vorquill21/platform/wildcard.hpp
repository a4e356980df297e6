#pragma once

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// True when `text` holds one of the wildcards "*" and "?".
bool HasWildcards(TextView text) noexcept;

/// True when `pattern` describes the whole of `name`, ignoring case: "*" stands for any number of units, none
/// among them, "?" for exactly one; every other unit stands for itself. Cost: at most the product of both
/// lengths.
bool MatchesWildcards(TextView name, TextView pattern) noexcept;

}  // namespace vorquill21
