#include "columns/line_splitter.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace vorquill21::tool {
namespace {

/// The lines of a text that arrives in pieces of `size` bytes.
std::vector<std::string> LinesOf(std::string_view text, std::size_t size) {
  std::vector<std::string> lines;
  const auto keep = [&lines](std::string_view line) { lines.emplace_back(line); };
  LineSplitter splitter;
  for (; !text.empty(); text.remove_prefix(std::min(size, text.size())))
    splitter.Add(text.substr(0, size), keep);
  splitter.Finish(keep);
  return lines;
}

struct Case {
  const char* text;
  std::vector<std::string> lines;
};

TEST(LineSplitterTest, LinesEndAtEachKindOfEndWhereverThePiecesAreCut) {
  const std::vector<Case> cases{
      {"", {}},
      {"a", {"a"}},
      {"a\n", {"a"}},
      {"a\r\nb", {"a", "b"}},
      {"a\rb\nc\r\nd", {"a", "b", "c", "d"}},
      {"\n\n", {"", ""}},
      {"\r\r", {"", ""}},
      {"\r\n\r\n", {"", ""}},
      {"\n\r", {"", ""}},
      {"a\r\n\nb\r\r\nc", {"a", "", "b", "", "c"}},
      {"long line\rother long line\n", {"long line", "other long line"}},
  };
  for (const Case& c : cases) {
    for (std::size_t size = 1; size <= 20; ++size)
      EXPECT_EQ(LinesOf(c.text, size), c.lines) << c.text << " in pieces of " << size;
  }
}

TEST(LineSplitterTest, AnEmptyPieceDoesNotPartCarriageReturnAndLineFeed) {
  std::vector<std::string> lines;
  const auto keep = [&lines](std::string_view line) { lines.emplace_back(line); };
  LineSplitter splitter;
  for (const char* const piece : {"a\r", "", "\nb\n"}) splitter.Add(piece, keep);
  EXPECT_EQ(lines, (std::vector<std::string>{"a", "b"}));
}

}  // namespace
}  // namespace vorquill21::tool
