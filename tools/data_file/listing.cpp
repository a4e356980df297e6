#include <algorithm>
#include <set>

#include "data_file/commands.hpp"
#include "data_file/data_file.hpp"

namespace vorquill21::tool {
namespace {

std::string LineEnds(const std::string& bytes) {
  std::size_t pairs = 0;
  std::size_t lineFeeds = 0;
  std::size_t carriageReturns = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\r') {
      const bool isPair = i + 1 < bytes.size() && bytes[i + 1] == '\n';
      ++(isPair ? pairs : carriageReturns);
      if (isPair) ++i;
    } else if (bytes[i] == '\n') {
      ++lineFeeds;
    }
  }
  const int kinds = (pairs > 0 ? 1 : 0) + (lineFeeds > 0 ? 1 : 0) + (carriageReturns > 0 ? 1 : 0);
  if (kinds == 0) return "none";
  if (kinds > 1) return "mixed";
  return pairs > 0 ? "CR LF" : lineFeeds > 0 ? "LF" : "CR";
}

struct InfoCommand {
  std::string file;

  void Declare(CLI::App& command) { DeclareFile(command, file, "The data file"); }

  ExitCode Run(Session& session, Result& result) const {
    DataFile data(session, file);
    CFileStream& stream = data.Stream();
    const std::vector<Record> fields = data.Fields();
    const auto tables =
        std::ranges::count_if(fields, [&](const Record& record) { return IsTable(record, data.Contents()); });
    const Text separator(1, data.Separator());
    result.Add("file", "file", file);
    result.Add("bytes", "bytes", data.Bytes().size());
    result.Add("version", "version", ToUtf8(stream.FileVersion()));
    result.Add("version_type", "version type", ToUtf8(stream.FileVersionType()));
    result.Add("version_number", "version number", ToUtf8(stream.FileVersionNumber()));
    result.Add("decimal_separator", "decimal separator", ToUtf8(separator));
    result.Add("line_ends", "line ends", LineEnds(data.Bytes()));
    result.Add("fields", "fields", fields.size());
    result.Add("tables", "tables among them", tables);
    result.Add("page_runs", "tables of several pages", data.PageRuns().size());
    return ExitCode::kGood;
  }
};

Result::Row FieldRow(DataFile& data, const Record& record) {
  constexpr std::size_t kMostShown = 40;
  const Field field = data.Read(record);
  Text shown;
  for (const Text& value : field.values) {
    if (!shown.empty()) shown += u"  ";
    shown += value;
  }
  if (shown.size() > kMostShown) shown = shown.substr(0, kMostShown - 3) + u"...";
  Value rows = field.values.size();
  Value columns;
  if (field.table) {
    rows = field.table->UpperBound(1) + 1;
    columns = field.table->UpperBound(2) + 1;
  }
  return {ToUtf8(record.name), KindName(field.kind), rows, columns, Value(), ToUtf8(shown)};
}

struct LsCommand {
  std::string file;

  void Declare(CLI::App& command) { DeclareFile(command, file, "The data file"); }

  /// Pages of a table are one line.
  ExitCode Run(Session& session, Result& result) const {
    DataFile data(session, file);
    const std::vector<PageRun> runs = data.PageRuns();
    const std::vector<Record> fields = data.Fields();
    const std::set<Text> laterPages = LaterPages(runs);
    std::vector<Result::Row> rows;
    auto run = runs.begin();
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (run != runs.end() && run->firstRecord == i) {
        rows.push_back({ToUtf8(run->name), "pages", run->rows, run->columns, run->pages, ""});
        ++run;
      } else if (!laterPages.contains(fields[i].name)) {
        rows.push_back(FieldRow(data, fields[i]));
      }
    }
    result.AddTable("fields",
                    {{"name", "NAME"},
                     {"kind", "KIND"},
                     {"rows", "ROWS"},
                     {"columns", "COLUMNS"},
                     {"pages", "PAGES"},
                     {"values", "VALUES"}},
                    std::move(rows));
    return ExitCode::kGood;
  }

 private:
  static std::set<Text> LaterPages(const std::vector<PageRun>& runs) {
    std::set<Text> names;
    for (const PageRun& run : runs) {
      for (std::int32_t page = 2; page <= run.pages; ++page)
        names.insert(run.name + u" PAGE " + NumberToText(page));
    }
    return names;
  }
};

struct GetCommand {
  std::string file;
  std::string name;
  bool asNumbers = false;
  std::string defaultValue;
  const CLI::Option* hasDefault = nullptr;

  void Declare(CLI::App& command) {
    DeclareFile(command, file, "The data file");
    command.add_option("NAME", name, "The field, in exactly these letters")->required()->type_name("");
    command.add_flag("--number", asNumbers, "Read the values as numbers; what is none is 0");
    hasDefault = command.add_option("--default", defaultValue, "Stands in for a field without a value")
                     ->type_name("VALUE");
  }

  ExitCode Run(Session& session, Result& result) const {
    DataFile data(session, file);
    const std::optional<Field> field = data.Read(name);
    const bool isMissing = !field || field->kind == Field::Kind::kEmpty;
    if (field && (field->kind == Field::Kind::kTable || field->kind == Field::Kind::kBrokenTable)) {
      throw Failure(ExitCode::kRefused, name + " is a table; \"vorquill21 table show\" shows it");
    }
    if (!field && hasDefault->count() == 0) {
      throw Failure(ExitCode::kFindings, file + " has no field " + name);
    }
    const Variant stand =
        hasDefault->count() > 0 ? Variant(FromUtf8(Typed(defaultValue))) : Variant(Missing{});
    const Text sought = FromUtf8(name);
    const Variant values =
        asNumbers ? data.Stream().GetFieldNumber(sought, stand) : data.Stream().GetFieldString(sought, stand);
    Value list = Value::array();
    if (values.IsArray()) {
      for (std::int32_t i = 0; i <= ArrayBounds(values).upper; ++i)
        list.push_back(ValueOfVariant(ArrayElement(values, i)));
    } else {
      list.push_back(ValueOfVariant(values));
    }
    result.Add("name", "", name);
    result.Add("exists", "", field.has_value());
    result.Add("is_default", "", isMissing && hasDefault->count() > 0);
    result.AddLines("values", list);
    return ExitCode::kGood;
  }

 private:
  static Value ValueOfVariant(const Variant& value) {
    if (const double* number = value.If<double>()) return *number;
    return ToUtf8(ToText(value, u'.'));
  }
};

}  // namespace

void AddInfo(CLI::App& app, Work& chosen) {
  AddCommand<InfoCommand>(app, chosen, "info",
                          "Tell about a data file: version, separator, line ends, fields", "info tyre.txt");
}

void AddLs(CLI::App& app, Work& chosen) {
  AddCommand<LsCommand>(app, chosen, "ls", "List the fields of a data file", "ls tyre.txt");
}

void AddGet(CLI::App& app, Work& chosen) {
  AddCommand<GetCommand>(app, chosen, "get", "Print the values of a field, one on a line",
                         "get tyre.txt \"CAMBER DATA COUNT\" --number");
}

}  // namespace vorquill21::tool
