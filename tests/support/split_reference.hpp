#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21::test {

/// The elements of a text that is split as Split5 does, one search at a time; at most `limit` of them unless
/// that is negative. `delimiter` is not empty.
inline std::vector<Text> SplitStepByStep(const Text& text, const Text& delimiter, std::int32_t limit,
                                         bool skipsEmpty) {
  std::vector<Text> elements;
  std::size_t from = 0;
  while (from < text.size() && static_cast<std::int64_t>(elements.size()) != limit) {
    std::size_t found = text.find(delimiter, from);
    if (found == Text::npos) found = text.size();
    if (!(skipsEmpty && found == from)) elements.push_back(text.substr(from, found - from));
    from = found + delimiter.size();
  }
  return elements;
}

}  // namespace vorquill21::test
