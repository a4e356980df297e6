#pragma once

#include <optional>
#include <vector>

#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21::test {

/// The parts of a text between delimiters; none of the empty text.
inline std::vector<Text> LiteralSplit(const Text& text, char16_t delimiter) {
  std::vector<Text> parts;
  if (text.empty()) return parts;
  parts.emplace_back();
  for (const char16_t unit : text) {
    if (unit == delimiter) {
      parts.emplace_back();
    } else {
      parts.back() += unit;
    }
  }
  return parts;
}

/// What a number in the notation of a document reads as, every occurrence of its separator replaced.
inline double LiteralNumber(Text text, const Text& written, char16_t users) {
  for (std::size_t at = 0; (at = text.find(written, at)) != Text::npos; ++at) {
    text.replace(at, written.size(), 1, users);
  }
  return TextToNumber(text, users).value_or(0.0);
}

/// What the text of a table field promises to read as: split at CR, each part but the first split at TAB, as
/// many columns as the first row has up to its last filled cell. Nothing where reading fails.
inline std::optional<std::vector<std::vector<double>>> LiteralTable(const Text& fieldText,
                                                                    const Text& written, char16_t users) {
  std::vector<Text> rows = LiteralSplit(fieldText, u'\r');
  if (rows.size() < 2) return std::nullopt;
  rows.erase(rows.begin());
  std::size_t columns = 0;
  const std::vector<Text> firstCells = LiteralSplit(rows.front(), u'\t');
  for (std::size_t i = 0; i < firstCells.size(); ++i) {
    if (!firstCells[i].empty()) columns = i + 1;
  }
  if (columns == 0) return std::nullopt;
  std::vector<std::vector<double>> table;
  for (const Text& row : rows) {
    const std::vector<Text> cells = LiteralSplit(row, u'\t');
    if (cells.size() < columns) return std::nullopt;
    table.emplace_back();
    for (std::size_t i = 0; i < columns; ++i) table.back().push_back(LiteralNumber(cells[i], written, users));
  }
  return table;
}

}  // namespace vorquill21::test
