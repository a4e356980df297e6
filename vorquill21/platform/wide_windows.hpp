#pragma once

#include <string>
#include <string_view>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// A text as the wide calls of the system take it, and back.
inline std::wstring ToWide(TextView text) {
  return {text.begin(), text.end()};
}

inline Text FromWide(std::wstring_view wide) {
  return {wide.begin(), wide.end()};
}

}  // namespace vorquill21
