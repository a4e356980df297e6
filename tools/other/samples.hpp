#pragma once

#include <span>
#include <string_view>

namespace vorquill21::tool {

/// A file that comes with the program.
struct Sample {
  const char* name;
  const char* description;
  std::string_view bytes;
};

/// tyre.txt, load-cell-calibration.txt and faulty-columns.txt, in this order.
std::span<const Sample> Samples() noexcept;

}  // namespace vorquill21::tool
