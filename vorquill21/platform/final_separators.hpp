#pragma once

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// A folder's path as others are appended to it; the root is the empty text.
inline Text WithoutFinalSeparators(TextView folder) {
  return Text(folder.substr(0, folder.find_last_not_of(u"\\/") + 1));
}

}  // namespace vorquill21
