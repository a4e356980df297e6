#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vorquill21::tool {

/// How a column file is laid out. Rows are lines counted from 1.
struct Layout {
  std::string delimiter;
  std::int32_t headerRow = 0;
  std::int32_t firstValueRow = 0;
  std::int32_t columns = 0;
  bool hasHeader = true;  ///< false: the first line of values serves as one
};

/// The layout of the longest run of lines that hold as many numbers each, below a header if there is any such
/// run; nothing when there are not two numbers. Tab, semicolon, comma, bar and blank are tried as delimiters.
/// The header is the first of the lines of texts above the values that have as many fields.
std::optional<Layout> Sniff(std::string_view beginning);

}  // namespace vorquill21::tool
