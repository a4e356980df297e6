#include "data_file/cell_text.hpp"

#include <array>
#include <utility>

namespace vorquill21::tool {
namespace {

using NamedDelimiter = std::pair<std::string_view, std::string_view>;
constexpr std::array<NamedDelimiter, 6> kDelimiters{
    {{"tab", "\t"}, {"comma", ","}, {"semicolon", ";"}, {"blank", " "}, {"bar", "|"}, {"\\t", "\t"}}};

}  // namespace

CellFate FateOf(double cell) {
  try {
    return cell != 0 && ToSingle(cell, u'.') == 0 ? CellFate::kLost : CellFate::kKept;
  } catch (const LibraryError&) {
    return CellFate::kRefused;
  }
}

std::string DelimiterNamed(const std::string& name) {
  for (const auto& [word, delimiter] : kDelimiters) {
    if (word == name) return std::string(delimiter);
  }
  return name;
}

std::string DelimiterName(std::string_view delimiter) {
  for (const auto& [word, named] : kDelimiters) {
    if (named == delimiter) return std::string(word);
  }
  return std::string(delimiter);
}

}  // namespace vorquill21::tool
