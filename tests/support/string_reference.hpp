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

inline Text ReplaceAll(TextView text, TextView find, TextView replacement) {
  Text result;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(find, from)) != TextView::npos; from = at + find.size()) {
    result.append(text.substr(from, at - from)).append(replacement);
  }
  return result.append(text.substr(from));
}

/// What ReplaceMulti makes of a text, pass by pass.
inline Text ReplaceMultiStepByStep(TextView original, TextView find, TextView replacement) {
  Text text(original);
  if (find.empty()) return text;
  for (Text before; before != text;) {
    before = text;
    text = ReplaceAll(before, Text(find).append(find), find);
  }
  return ReplaceAll(text, find, replacement);
}

}  // namespace vorquill21::test
