#include <filesystem>

#include "data_file/commands.hpp"
#include "data_file/data_file.hpp"

namespace vorquill21::tool {
namespace {

constexpr const char* kNoBrackets = "may not hold \"[\", tabs and line ends, as nothing would read it back";

bool IsMissing(const std::string& path) {
  std::error_code error;  // what cannot be looked at will not be written, either
  return path != "-" && !std::filesystem::exists(path, error);
}

struct SetCommand {
  std::string file;
  std::string name;
  std::vector<std::string> values;
  bool asNumbers = false;
  bool removes = false;
  std::string version;
  std::string output;

  void Declare(CLI::App& command) {
    DeclareFile(command, file, "The data file, which is replaced as a whole or stays as it is");
    command.add_option("NAME", name, "The field, in exactly these letters")->required()->type_name("");
    command.add_option("VALUE", values, "Its values; without one the field is empty")->type_name("");
    command.add_flag("--number", asNumbers,
                     "The values are numbers with a point; write them as the file writes numbers");
    CLI::Option* const remove = command.add_flag("--remove", removes, "Remove the field");
    command.add_option("--create", version, "Make the file when it is missing, with this version")
        ->type_name("VERSION")
        ->excludes(remove);
    command.add_option("-o,--output", output, "Write here instead; \"-\" is standard output")
        ->type_name("FILE");
  }

  ExitCode Run(Session& session, Result& result) const {
    RequireUsable();
    RequireStorable(session, FromUtf8(name));
    for (const std::string& value : values) RequireStorable(session, FromUtf8(value));
    const bool isNew = !version.empty() && IsMissing(file);
    if (isNew) RequireStorable(session, FromUtf8(version));
    DataFile data = isNew ? DataFile(session, file, FromUtf8(version)) : DataFile(session, file);
    const Text field = FromUtf8(name);
    const bool existed = data.Stream().FieldExists(field);
    if (removes && !existed) throw Failure(ExitCode::kFindings, file + " has no field " + name);
    data.PrepareForChanges();
    if (removes) {
      data.Stream().RemoveField(field);
    } else {
      data.Stream().AddField(field, FieldValues());
    }
    const std::string& target = output.empty() ? file : output;
    data.Write(target, field);
    if (target == "-") result.Silence();
    result.Add("file", "", target);
    result.Add("name", "", name);
    result.Add("existed", "", existed);
    result.Add("action", "", removes ? "removed" : existed ? "replaced" : "added");
    return ExitCode::kGood;
  }

 private:
  void RequireUsable() const {
    if (removes && !values.empty()) throw Failure(ExitCode::kUsage, "--remove takes no values");
    if (name.find_first_of("[]\t\r\n") != std::string::npos) {
      throw Failure(ExitCode::kUsage, "a name may not hold brackets, tabs and line ends");
    }
    if (removes && (name == "FILEVERSION" || name == "DEC SEP")) {
      throw Failure(ExitCode::kRefused, "every data file has the field " + name);
    }
    for (const std::string& value : values) {
      if (value.find_first_of("[\t\r\n") != std::string::npos)
        throw Failure(ExitCode::kUsage, std::string("a value ") + kNoBrackets);
    }
  }

  Variant FieldValues() const {
    std::vector<Variant> list;
    for (const std::string& value : values) {
      list.emplace_back(asNumbers ? Variant(NumberArgument(value)) : Variant(FromUtf8(Typed(value))));
    }
    return BoundedArray<Variant>(std::move(list));
  }
};

}  // namespace

void AddSet(CLI::App& app, Work& chosen) {
  AddCommand<SetCommand>(app, chosen, "set", "Give a field of a data file new values, or remove it",
                         "set tyre.txt PRESSURE 2.2 --number");
}

}  // namespace vorquill21::tool
