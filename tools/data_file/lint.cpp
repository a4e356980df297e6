#include <algorithm>
#include <map>

#include "data_file/cell_text.hpp"
#include "data_file/commands.hpp"
#include "data_file/data_file.hpp"

namespace vorquill21::tool {
namespace {

/// Looks for what the library reads differently than it looks, or refuses.
class Inspection {
 public:
  Inspection(DataFile& data, Result& result) : data_(data), result_(result), contents_(data.Contents()) {}

  void Inspect() {
    if (data_.IsRefused()) Find("refused", "the library does not read this file", {}, 0);
    if (data_.Records().empty()) Find("no-record", "there is no record, so this is no data file", {}, 0);
    InspectSeparator();
    InspectBrackets();
    for (const Record& record : data_.Records()) {
      InspectName(record);
      InspectLineEnds(record);
      if (IsTable(record, contents_)) {
        InspectTable(record);
      } else {
        InspectValues(record);
      }
    }
  }

 private:
  void Find(const char* kind, std::string message, const Text& field, std::int64_t line) {
    result_.AddFinding({kind, std::move(message), ToUtf8(field), line});
  }

  void InspectSeparator() {
    for (const Record& record : data_.Records()) {
      if (record.name != u"DEC SEP") continue;
      const TextView value = Trimmed(ValueOf(record, contents_));
      if (!value.empty() && value != u"." && value != u",") {
        Find("wrong-separator", R"(the decimal separator is neither "." nor ",")", record.name, record.line);
      }
      return;
    }
  }

  /// A bracket that opens within a value ends it, whether or not it begins a record.
  void InspectBrackets() {
    std::size_t next = 0;
    std::int64_t line = 1;
    std::size_t counted = 0;
    for (std::size_t at = contents_.find(u'['); at != Text::npos; at = contents_.find(u'[', at + 1)) {
      while (next < data_.Records().size() && data_.Records()[next].begin < at) ++next;
      const bool beginsRecord = next < data_.Records().size() && data_.Records()[next].begin == at;
      if (beginsRecord && data_.Records()[next].startsLine) continue;
      for (; counted < at; ++counted) line += IsLineEnd(counted) ? 1 : 0;
      const Text field = next > 0 ? data_.Records()[next - 1].name : Text();
      Find("bracket-in-value",
           beginsRecord ? "\"[" + ToUtf8(data_.Records()[next].name) +
                              "]\" within a value ends it and reads as a field"
                        : "\"[\" within a value ends it",
           field, line);
    }
  }

  bool IsLineEnd(std::size_t at) const {
    return contents_[at] == u'\n' ||
           (contents_[at] == u'\r' && TextView(contents_).substr(at + 1, 1) != u"\n");
  }

  void InspectName(const Record& record) {
    const auto [first, isFirst] = lineOfName_.emplace(record.name, record.line);
    if (isFirst) return;
    Find("shadowed-name",
         "never read, as the field in line " + std::to_string(first->second) + " has the same name",
         record.name, record.line);
  }

  void InspectLineEnds(const Record& record) {
    const TextView value = ValueOf(record, contents_);
    for (std::size_t at = value.find(u'\n'); at != TextView::npos; at = value.find(u'\n', at + 1)) {
      if (at > 0 && value[at - 1] == u'\r') continue;
      Find("lf-only",
           "a line ends in LF only: replacing the field damages the next one, and no table reads so",
           record.name, record.line);
      return;
    }
  }

  void InspectValues(const Record& record) {
    for (const TextView value : SplitAt(Trimmed(ValueOf(record, contents_)), u'\t')) {
      if (record.name != u"DEC SEP" && HasOtherSeparator(value)) {
        Find("wrong-separator", "\"" + ToUtf8(value) + "\" has not the separator of the file and reads as 0",
             record.name, record.line);
      }
    }
  }

  void InspectTable(const Record& record) {
    std::vector<std::vector<TextView>> rows;
    std::vector<TextView> lines = SplitAt(RightTrimmed(ValueOf(record, contents_)), u'\n');
    lines.erase(lines.begin());
    for (const TextView line : lines) rows.push_back(SplitAt(RightTrimmed(line, u"\r\n"), u'\t'));
    if (rows.empty()) return;
    std::vector<TextView>& first = rows.front();
    while (!first.empty() && first.back().empty()) first.pop_back();
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::int64_t line = record.line + 1 + static_cast<std::int64_t>(i);
      if (rows[i].size() != first.size()) {
        Find("ragged-row",
             Counted(rows[i].size(), "cell") + " instead of " + std::to_string(first.size()) +
                 (rows[i].size() > first.size() ? ": the rest is not read" : ": the table cannot be read"),
             record.name, line);
      }
      for (const TextView cell : rows[i]) InspectCell(cell, record, line);
    }
  }

  void InspectCell(TextView cell, const Record& record, std::int64_t line) {
    const std::string shown = "\"" + ToUtf8(cell) + "\"";
    const auto number = TextToNumber(cell, data_.Separator());
    if (!number) {
      if (cell.empty()) return;
      if (HasOtherSeparator(cell)) {
        Find("wrong-separator", shown + " has not the separator of the file and reads as 0", record.name,
             line);
      } else {
        Find("no-number", shown + " is no number and reads as 0", record.name, line);
      }
    } else if (FateOf(*number) == CellFate::kLost) {
      Find("cell-lost", shown + " is 0 in single precision and would be written as 0", record.name, line);
    } else if (FateOf(*number) == CellFate::kRefused) {
      Find("cell-refused", shown + " is beyond single precision: the table could not be written again",
           record.name, line);
    }
  }

  /// A number in the notation that is not the file's.
  bool HasOtherSeparator(TextView value) const {
    const char16_t other = data_.Separator() == u',' ? u'.' : u',';
    return value.find(other) != TextView::npos && !data_.IsNumber(value) &&
           TextToNumber(value, other).has_value();
  }

  static TextView RightTrimmed(TextView text, TextView what = u"\r\n\t ") {
    const std::size_t last = text.find_last_not_of(what);
    return text.substr(0, last == TextView::npos ? 0 : last + 1);
  }

  static TextView Trimmed(TextView text) {
    const TextView trimmed = RightTrimmed(text);
    return trimmed.substr(std::min(trimmed.find_first_not_of(u'\t'), trimmed.size()));
  }

  DataFile& data_;
  Result& result_;
  const Text& contents_;
  std::map<Text, std::int64_t> lineOfName_;
};

struct LintCommand {
  std::string file;

  void Declare(CLI::App& command) { DeclareFile(command, file, "The data file"); }

  ExitCode Run(Session& session, Result& result) const {
    DataFile data(session, file, DataFile::Purpose::kInspect);
    result.Add("file", "", file);
    result.ReportFindings();
    Inspection(data, result).Inspect();
    result.Add("count", "", result.Findings().size());
    if (result.Findings().empty()) result.AddText(file + ": nothing was found\n");
    return CodeOfFindings(result);
  }
};

}  // namespace

void AddLint(CLI::App& app, Work& chosen) {
  AddCommand<LintCommand>(app, chosen, "lint",
                          "Find what a data file says and nothing reads back; exit code 1 when there is any",
                          "lint tyre.txt");
}

}  // namespace vorquill21::tool
