#include "program/arguments.hpp"

#include <cctype>
#include <limits>

namespace vorquill21::tool {

Program::Program()
    : app_("Looks at, mends and draws what the Vorquill21 library reads and writes.", "vorquill21") {
  app_.set_version_flag("--version", "vorquill21 " VORQUILL21_VERSION);
  app_.add_flag("--json", wantsJson_, "Print the result for programs, as one JSON object");
  app_.require_subcommand(1);
  app_.fallthrough();
  app_.get_formatter()->column_width(34);
  app_.footer(
      "Files: \"-\" is standard input, or standard output where a file is written.\n"
      "Exit codes: 0 good, 1 findings, 2 usage, 3 input or output failed, 4 refused.\n"
      "\"vorquill21 COMMAND --help\" tells more, with an example.");
  AddDataFileCommands(app_, chosen_);
  AddColumnCommands(app_, chosen_);
  AddPlotCommands(app_, chosen_);
  AddLogCommands(app_, chosen_);
  AddOtherCommands(app_, chosen_);
}

void DeclareFile(CLI::App& command, std::string& file, const std::string& description) {
  command.add_option("FILE", file, description + "; \"-\" is standard input")->required()->type_name("");
}

CLI::App& AddGroup(CLI::App& parent, const std::string& name, const std::string& description,
                   const std::string& example) {
  CLI::App* const group = parent.add_subcommand(name, description);
  group->require_subcommand(1);
  AddExample(*group, example);
  return *group;
}

void AddExample(CLI::App& command, const std::string& example) {
  command.footer("Example:\n  vorquill21 " + example);
}

void LimitTo(CLI::Option* option, const std::vector<std::string>& words) {
  std::string shown;
  for (const std::string& word : words) shown += (shown.empty() ? "" : "|") + word;
  option->check(CLI::IsMember(words).description(""))->type_name(shown);
}

CLI::Validator PositiveNumber() {
  return NumberBetween(1, std::numeric_limits<std::int32_t>::max());
}

CLI::Validator NumberFromZero() {
  return {[](const std::string& argument) {
            const auto number = TextToNumber(std::string_view(argument), '.');
            return number && *number >= 0 ? "" : Typed(argument) + " is no number from 0 on";
          },
          ""};
}

CLI::Validator NumberBetween(std::int32_t least, std::int32_t greatest) {
  return CLI::Validator(CLI::Range(least, greatest)).description("");
}

std::vector<std::string> ParserArguments(int count, const char* const* arguments) {
  std::vector<std::string> reversed;
  for (int i = count - 1; i > 0; --i) {
    const std::string argument = arguments[i];
    const bool isNegative =
        argument.size() > 1 && argument[0] == '-' &&
        (std::isdigit(static_cast<unsigned char>(argument[1])) != 0 || argument[1] == '.');
    reversed.push_back(isNegative ? " " + argument : argument);
  }
  return reversed;
}

std::string Typed(const std::string& argument) {
  const bool isGuarded = argument.size() > 2 && argument[0] == ' ' && argument[1] == '-';
  return isGuarded ? argument.substr(1) : argument;
}

double NumberArgument(const std::string& argument) {
  const auto number = TextToNumber(std::string_view(argument), '.');
  if (!number) throw Failure(ExitCode::kUsage, "\"" + Typed(argument) + "\" is no number");
  return *number;
}

}  // namespace vorquill21::tool
