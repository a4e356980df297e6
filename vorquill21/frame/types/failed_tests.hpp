#pragma once

#include <vector>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// The names of the self-test checks that failed, in the order in which they failed. A name may stand there
/// twice, and one check is known by the empty name.
using FailedTests = std::vector<Text>;

}  // namespace vorquill21
