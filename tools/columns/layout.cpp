#include "columns/layout.hpp"

#include <array>
#include <utility>
#include <vector>

#include "columns/fields.hpp"
#include "columns/line_splitter.hpp"

namespace vorquill21::tool {
namespace {

/// What a line comes to with one delimiter.
struct LineShape {
  std::int32_t fields = 0;
  bool isNumeric = false;  ///< every field begins with a number
};

LineShape ShapeOf(std::string_view line, std::string_view delimiter) {
  LineShape shape;
  std::int32_t numbers = 0;
  std::string_view field;
  for (bool doubled = false; TakeField(line, delimiter, field, doubled); ++shape.fields) {
    const FieldKind kind = KindOf(field);
    if (kind != FieldKind::kNoNumber) ++numbers;
  }
  shape.isNumeric = shape.fields > 0 && 2 * numbers > shape.fields;
  return shape;
}

std::vector<std::string> LinesOf(std::string_view beginning) {
  constexpr std::size_t kMostLines = 400;
  std::vector<std::string> lines;
  const auto keep = [&lines](std::string_view line) {
    if (lines.size() < kMostLines) lines.emplace_back(line);
  };
  LineSplitter splitter;
  splitter.Add(beginning, keep);
  splitter.Finish(keep);
  return lines;
}

/// Numeric lines that have as many fields as the first of them, and the lines of texts above them that have,
/// too.
struct Run {
  std::size_t header = 0;
  std::size_t begin = 0;
  std::size_t count = 0;

  bool HasHeader() const noexcept { return header < begin; }

  /// A header is worth more than any number of lines.
  bool IsBetterThan(const Run& other) const noexcept {
    return std::pair(HasHeader(), count) > std::pair(other.HasHeader(), other.count);
  }
};

std::size_t HeaderAbove(const std::vector<LineShape>& shapes, std::size_t begin) {
  std::size_t header = begin;
  while (header > 0 && !shapes[header - 1].isNumeric && shapes[header - 1].fields == shapes[begin].fields)
    --header;
  return header;
}

Run BestRun(const std::vector<LineShape>& shapes) {
  Run best;
  Run run;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    const bool goesOn = shapes[i].isNumeric && run.count > 0 && shapes[i].fields == shapes[run.begin].fields;
    if (goesOn) {
      ++run.count;
    } else {
      run = shapes[i].isNumeric ? Run{HeaderAbove(shapes, i), i, 1} : Run{};
    }
    if (run.IsBetterThan(best)) best = run;
  }
  return best;
}

Layout LayoutOf(const std::vector<LineShape>& shapes, const Run& run, std::string_view delimiter) {
  const auto row = [](std::size_t line) { return static_cast<std::int32_t>(line) + 1; };
  return {std::string(delimiter), row(run.header), row(run.begin) + (run.HasHeader() ? 0 : 1),
          shapes[run.begin].fields, run.HasHeader()};
}

}  // namespace

std::optional<Layout> Sniff(std::string_view beginning) {
  constexpr std::array<std::string_view, 5> kDelimiters{"\t", ";", ",", "|", " "};
  constexpr std::size_t kFewestCells = 2;
  const std::vector<std::string> lines = LinesOf(beginning);
  std::optional<Layout> best;
  std::size_t bestCells = 0;
  for (const std::string_view delimiter : kDelimiters) {
    std::vector<LineShape> shapes;
    for (const std::string& line : lines) shapes.push_back(ShapeOf(line, delimiter));
    const Run run = BestRun(shapes);
    if (run.count == 0) continue;
    const std::size_t cells = run.count * static_cast<std::size_t>(shapes[run.begin].fields);
    if (cells < kFewestCells || cells <= bestCells) continue;
    bestCells = cells;
    best = LayoutOf(shapes, run, delimiter);
  }
  return best;
}

}  // namespace vorquill21::tool
