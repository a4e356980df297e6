#pragma once

#include <string>
#include <string_view>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {

/// How a table takes a number: cells go through single precision when they are written.
enum class CellFate {
  kKept,
  kLost,     ///< so small that it is written as 0
  kRefused,  ///< so large that the table is not written
};

CellFate FateOf(double cell);

/// A delimiter as the user names it: "tab", "comma", "semicolon", "blank", "bar", "\t", or any text.
std::string DelimiterNamed(const std::string& name);

/// The word for a delimiter, or the delimiter itself.
std::string DelimiterName(std::string_view delimiter);

}  // namespace vorquill21::tool
