#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"

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

/// The argument list as a machine of two states builds it, one unit after the other.
inline Variant ParseStepByStep(TextView line) {
  std::vector<Text> texts(1);
  bool inArgument = false;
  bool inQuote = false;
  for (const char16_t unit : line) {
    const bool wasInArgument = inArgument;
    if (wasInArgument && unit == (inQuote ? u'"' : u' ')) inArgument = inQuote = false;
    if (!wasInArgument && unit != u' ') {
      texts.emplace_back();
      inArgument = true;
      inQuote = unit == u'"';
    }
    if (inArgument && unit != u'"') texts.back() += unit;
  }
  std::vector<Variant> list;
  for (const Text& text : texts) list.push_back(text.empty() ? Variant() : Variant(text));
  return BoundedArray<Variant>(std::move(list));
}

}  // namespace vorquill21::test
