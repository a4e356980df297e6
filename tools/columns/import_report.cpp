#include "columns/import_report.hpp"

#include "vorquill21/vorquill21.hpp"

namespace vorquill21::tool {
namespace {

std::string FromBytes(std::string_view bytes) {
  return ToUtf8(FromCodePage(Platform::Native().GetLocale(), bytes));
}

}  // namespace

ImportReport::ImportReport(std::string delimiter, const Layout& layout, std::int32_t maxColumns)
    : delimiter_(std::move(delimiter)), layout_(layout), maxColumns_(static_cast<std::size_t>(maxColumns)) {}

void ImportReport::Sightings::Add(Finding finding) {
  constexpr std::size_t kMostShown = 10;
  ++count;
  if (first.size() < kMostShown) first.push_back(std::move(finding));
}

void ImportReport::TakeLine(std::string_view line) {
  ++line_;
  if (line_ == layout_.headerRow) return TakeHeader(line);
  if (line_ < layout_.firstValueRow || line_ <= layout_.headerRow) return;
  if (hasStopped_) {
    if (!line.empty()) ++unreadLines_;
    return;
  }
  TakeValues(line);
}

void ImportReport::TakeHeader(std::string_view line) {
  std::string_view field;
  for (bool doubled = false; TakeField(line, delimiter_, field, doubled);) {
    auto& list = headers_.size() + 1 < maxColumns_ ? headers_ : ignoredHeaders_;
    list.push_back(FromBytes(field));
  }
}

void ImportReport::TakeValues(std::string_view line) {
  bool isShifted = false;
  std::string_view field;
  for (std::size_t column = 0; column < headers_.size(); ++column) {
    bool doubled = false;
    if (!TakeField(line, delimiter_, field, doubled))
      return Stop(column == 0 ? "blank line" : "short line", column);
    isShifted = isShifted || doubled;
    TakeValue(field, column);
  }
  // Runs of blanks are how files with blanks between the columns look.
  if (isShifted && delimiter_ != " ") {
    shifted_.Add(
        {"shifted-row", "a missing value lets the values behind it move one column to the left", "", line_});
  }
}

void ImportReport::TakeValue(std::string_view field, std::size_t column) {
  switch (KindOf(field)) {
    case FieldKind::kNumber:
      return;
    case FieldKind::kNoNumber:
      return zeros_.Add({"zero-cell", "\"" + FromBytes(field) + "\" is read as 0", headers_[column], line_});
    case FieldKind::kPartlyNumber:
      return partial_.Add({"partial-cell",
                           "of \"" + FromBytes(field) + "\" only the number at its beginning is read",
                           headers_[column], line_});
    case FieldKind::kTooLarge:
      if (tooLargeLine_ == 0) tooLargeLine_ = line_;
  }
}

void ImportReport::Stop(std::string reason, std::size_t fields) {
  hasStopped_ = true;
  stoppedLine_ = line_;
  stoppedReason_ = std::move(reason);
  stoppedFields_ = fields;
}

void ImportReport::Describe(Result& result) const {
  result.Add("lines", "lines of the file", line_);
  result.Add("stopped_reason", "reading stopped at", hasStopped_ ? stoppedReason_ : "end of file");
  result.Add("stopped_line", hasStopped_ ? "in line" : "", hasStopped_ ? Value(stoppedLine_) : Value());
  result.Add("unread_lines", hasStopped_ ? "lines not read" : "", unreadLines_);
  result.Add("shifted_rows", "rows with shifted values", shifted_.count);
  result.Add("zero_cells", "cells read as 0", zeros_.count);
  result.Add("partial_cells", "cells read in part", partial_.count);
  result.Add("ignored_columns", ignoredHeaders_.empty() ? "" : "columns over the limit", ignoredHeaders_);
  result.ReportFindings();
  if (hasStopped_ && unreadLines_ > 0) {
    result.AddFinding({"early-stop",
                       Counted(stoppedFields_, "field") + " instead of " + std::to_string(headers_.size()) +
                           " end the data: " + Counted(static_cast<std::size_t>(unreadLines_), "line") +
                           " behind it not read",
                       "", stoppedLine_});
  }
  for (const Sightings* sightings : {&shifted_, &zeros_, &partial_}) {
    for (const Finding& finding : sightings->first) result.AddFinding(finding);
  }
  if (!ignoredHeaders_.empty()) {
    result.AddFinding({"column-limit", Counted(ignoredHeaders_.size(), "column") + " over the limit not read",
                       ignoredHeaders_.front(), layout_.headerRow});
  }
}

std::string ImportReport::ReasonOfFailure() const {
  if (line_ == 0) return "the file is empty";
  if (line_ < layout_.headerRow) {
    return "the file has " + Counted(static_cast<std::size_t>(line_), "line") + ", and the header row is " +
           std::to_string(layout_.headerRow);
  }
  if (headers_.empty()) return "the header row " + std::to_string(layout_.headerRow) + " holds no names";
  if (tooLargeLine_ > 0) return "line " + std::to_string(tooLargeLine_) + " holds a number that is too large";
  if (line_ + 1 < layout_.firstValueRow)
    return "the file ends before the first value row " + std::to_string(layout_.firstValueRow);
  return {};
}

}  // namespace vorquill21::tool
