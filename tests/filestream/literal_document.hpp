#pragma once

#include <algorithm>
#include <optional>

#include "vorquill21/frame/types/text.hpp"

namespace vorquill21::test {

/// What a document promises to read as: one text that every look-up searches and every removal cuts, position
/// by position (counted from 1) and without any cleverness.
struct LiteralDocument {
  struct Field {
    std::size_t start = 0;
    std::size_t end = 0;
  };

  std::optional<Field> Find(TextView name) const {
    const Text bracketed = Text(u"[").append(name).append(u"]");
    const std::size_t found = text.find(bracketed);
    if (found == Text::npos) return std::nullopt;
    const std::size_t start = (found + 1) + name.size() + 2;
    const Text rest = After(start);
    std::size_t k = rest.find(u'[');
    if (k == Text::npos) k = rest.size();
    while (k > 0 && (rest[k - 1] == u'\r' || rest[k - 1] == u'\n')) --k;
    return Field{start, start + k};
  }

  std::optional<Text> TextOf(TextView name) const {
    const auto field = Find(name);
    if (!field) return std::nullopt;
    return After(field->start - 1).substr(0, field->end - field->start + 1);
  }

  bool Remove(TextView name) {
    const auto field = Find(name);
    if (!field) return false;
    const std::size_t p = field->start - name.size() - 2;
    const Text head = text.substr(0, p - 1);
    Text tail;
    if (text.size() > field->end + 2) tail = After(field->end + 2);
    while (!tail.empty() && (tail.front() == u'\r' || tail.front() == u'\n')) tail.erase(0, 1);
    text = head + tail;
    return true;
  }

  void Append(TextView record) { text += record; }

  /// Everything behind the character at `position`.
  Text After(std::size_t position) const { return text.substr(std::min(position, text.size())); }

  Text text;
};

}  // namespace vorquill21::test
