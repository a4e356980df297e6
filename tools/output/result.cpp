#include "output/result.hpp"

#include <algorithm>
#include <array>
#include <cstdio>

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {
namespace {

/// Columns on a terminal that UTF-8 text takes, one for each character.
std::size_t Width(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string Padded(const std::string& text, std::size_t width, bool toTheRight) {
  const std::string blanks(width - std::min(width, Width(text)), ' ');
  return toTheRight ? blanks + text : text + blanks;
}

void AppendLine(std::string& out, const std::string& line) {
  const std::size_t last = line.find_last_not_of(' ');
  out.append(line, 0, last == std::string::npos ? 0 : last + 1);
  out += '\n';
}

struct Line {
  std::vector<std::string> cells;
  std::vector<bool> toTheRight;
};

Line LineOf(const Result::Row& row) {
  Line line;
  for (const Value& cell : row) {
    line.cells.push_back(PlainText(cell));
    line.toTheRight.push_back(cell.is_number());
  }
  return line;
}

/// Headings; those of columns with numbers stand to the right.
Line HeadingLine(const std::vector<std::string>& headings, const std::vector<Line>& lines) {
  Line heading{headings, std::vector<bool>(headings.size())};
  for (const Line& line : lines) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
      if (line.toTheRight[i]) heading.toTheRight[i] = true;
    }
  }
  return heading;
}

/// Columns two blanks apart; a heading stands as its column does.
std::string Aligned(const std::vector<std::string>& headings, const std::vector<Result::Row>& rows) {
  std::vector<Line> lines;
  std::ranges::transform(rows, std::back_inserter(lines), LineOf);
  if (!headings.empty()) lines.insert(lines.begin(), HeadingLine(headings, lines));
  std::vector<std::size_t> widths;
  for (const Line& line : lines) {
    widths.resize(std::max(widths.size(), line.cells.size()));
    for (std::size_t i = 0; i < line.cells.size(); ++i) widths[i] = std::max(widths[i], Width(line.cells[i]));
  }
  std::string out;
  for (const Line& line : lines) {
    std::string text;
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
      if (i > 0) text += "  ";
      text += Padded(line.cells[i], widths[i], line.toTheRight[i]);
    }
    AppendLine(out, text);
  }
  return out;
}

/// A line for each property: its label, and its value for each thing.
std::vector<Result::Row> Transposed(const std::vector<Result::Column>& columns,
                                    const std::vector<Result::Row>& rows) {
  std::vector<Result::Row> lines;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    Result::Row& line = lines.emplace_back();
    line.emplace_back(columns[i].label);
    for (const Result::Row& row : rows) line.push_back(row[i]);
  }
  return lines;
}

std::string FindingText(const Finding& finding) {
  std::string where;
  if (finding.line > 0) where += "line " + std::to_string(finding.line) + ": ";
  if (!finding.field.empty()) where += Visible(finding.field) + ": ";
  return where + Visible(finding.message);
}

Value FindingValue(const Finding& finding) {
  Value value;
  value["kind"] = finding.kind;
  value["message"] = finding.message;
  value["field"] = finding.field.empty() ? Value() : Value(finding.field);
  value["line"] = finding.line > 0 ? Value(finding.line) : Value();
  return value;
}

std::string NumberText(double number) {
  return ToUtf8(NumberToText(number, u'.'));
}

}  // namespace

std::string Visible(std::string_view text) {
  std::string visible;
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    if (code >= 0x20 && code != 0x7F) {
      visible += byte;
      continue;
    }
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\x%02X", code);
    visible += escape.data();
  }
  return visible;
}

std::string Counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string PlainText(const Value& value) {
  if (value.is_null()) return {};
  if (value.is_string()) return Visible(value.get_ref<const std::string&>());
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_number_float()) return NumberText(value.get<double>());
  if (!value.is_array()) return value.dump();
  std::string text;
  for (const Value& element : value) {
    if (!text.empty()) text += "  ";
    text += PlainText(element);
  }
  return text;
}

std::string JsonText(const Value& value) {
  return value.dump(2, ' ', false, Value::error_handler_t::replace) + '\n';
}

std::string Result::PartForPeople(const Part& part, std::size_t labelWidth) {
  if (const auto* named = std::get_if<Named>(&part)) {
    if (named->label.empty()) return {};
    std::string line;
    AppendLine(line, Padded(named->label + ":", labelWidth, false) + " " + PlainText(named->value));
    return line;
  }
  if (const auto* table = std::get_if<Table>(&part)) {
    if (table->rows.empty()) return {};
    if (table->isTransposed) return Aligned({}, Transposed(table->columns, table->rows));
    std::vector<std::string> headings;
    for (const Column& column : table->columns) headings.push_back(column.label);
    return Aligned(headings, table->rows);
  }
  if (const auto* pages = std::get_if<Pages>(&part)) {
    std::string text;
    for (const Page& page : pages->pages) {
      if (!text.empty()) text += '\n';
      if (page.number > 0) text += "page " + std::to_string(page.number) + '\n';
      text += Aligned({}, page.cells);
    }
    return text;
  }
  if (const auto* lines = std::get_if<Lines>(&part)) {
    std::string text;
    for (const Value& value : lines->values) text.append(PlainText(value)) += '\n';
    return text;
  }
  return std::get<std::string>(part);
}

std::string Result::ForPeople(bool inColour) const {
  std::size_t labelWidth = 0;
  for (const Part& part : parts_) {
    if (const auto* named = std::get_if<Named>(&part))
      labelWidth = std::max(labelWidth, Width(named->label) + 1);
  }
  std::string out;
  bool wasNamed = true;
  for (const Part& part : parts_) {
    const std::string text = PartForPeople(part, labelWidth);
    if (text.empty()) continue;
    const bool isNamed = std::holds_alternative<Named>(part);
    if (!out.empty() && !(isNamed && wasNamed)) out += '\n';
    out += text;
    wasNamed = isNamed;
  }
  if (!out.empty() && !findings_.empty()) out += '\n';
  for (const Finding& finding : findings_) {
    out += inColour ? "\033[33mfinding:\033[0m " : "finding: ";
    out += FindingText(finding) + " [" + finding.kind + "]\n";
  }
  return out;
}

void Result::AddForPrograms(const Part& part, Value& object) {
  if (const auto* named = std::get_if<Named>(&part)) {
    if (!named->key.empty()) object[named->key] = named->value;
  } else if (const auto* table = std::get_if<Table>(&part)) {
    Value& rows = object[table->key] = Value::array();
    for (const Row& row : table->rows) {
      Value element = Value::object();
      for (std::size_t i = 0; i < row.size(); ++i) element[table->columns[i].key] = row[i];
      rows.push_back(std::move(element));
    }
  } else if (const auto* pages = std::get_if<Pages>(&part)) {
    Value& list = object[pages->key] = Value::array();
    for (const Page& page : pages->pages) {
      list.push_back({{"page", page.number > 0 ? Value(page.number) : Value()}, {"cells", page.cells}});
    }
  } else if (const auto* lines = std::get_if<Lines>(&part)) {
    object[lines->key] = lines->values;
  }
}

std::string Result::ForPrograms() const {
  Value object = Value::object();
  for (const Part& part : parts_) AddForPrograms(part, object);
  if (reportsFindings_ || !findings_.empty()) {
    Value& list = object["findings"] = Value::array();
    for (const Finding& finding : findings_) list.push_back(FindingValue(finding));
  }
  return JsonText(object);
}

}  // namespace vorquill21::tool
