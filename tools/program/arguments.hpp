#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "program/session.hpp"

namespace vorquill21::tool {

/// The parser of the command line; the command that was asked for leaves its work here.
class Program {
 public:
  Program();

  CLI::App& App() noexcept { return app_; }
  Work& Chosen() noexcept { return chosen_; }

  /// Whether --json was given.
  bool WantsJson() const noexcept { return wantsJson_; }

 private:
  CLI::App app_;
  Work chosen_;
  bool wantsJson_ = false;
};

/// Closes the help of a command with an example.
void AddExample(CLI::App& command, const std::string& example);

/// Adds a command to `parent` that is nothing by itself and needs one of the commands below it.
CLI::App& AddGroup(CLI::App& parent, const std::string& name, const std::string& description,
                   const std::string& example);

/// Adds a command to `parent` with the line that describes it and an example to its help. `Options` is a
/// struct with the members `void Declare(CLI::App&)`, which ties them to the command line, and
/// `ExitCode Run(Session&, Result&) const`.
template <typename Options>
CLI::App& AddCommand(CLI::App& parent, Work& chosen, const std::string& name, const std::string& description,
                     const std::string& example) {
  CLI::App* const command = parent.add_subcommand(name, description);
  AddExample(*command, example);
  const auto options = std::make_shared<Options>();
  options->Declare(*command);
  command->callback([options, &chosen] {
    chosen = [options](Session& session, Result& result) { return options->Run(session, result); };
  });
  return *command;
}

/// The file argument that most commands begin with.
void DeclareFile(CLI::App& command, std::string& file, const std::string& description);

/// Lets an option be one of these words only; the help shows them.
void LimitTo(CLI::Option* option, const std::vector<std::string>& words);

// Checks of numbers that leave the help as short as it is.
CLI::Validator PositiveNumber();
CLI::Validator NumberFromZero();
CLI::Validator NumberBetween(std::int32_t least, std::int32_t greatest);

/// A command line in the form that the parser wants: a negative number, which it would take for an option,
/// has a blank before it. The program's own name is left out; the last argument comes first.
std::vector<std::string> ParserArguments(int count, const char* const* arguments);

/// An argument as the user typed it.
std::string Typed(const std::string& argument);

/// The number that the whole argument spells, with a decimal point; a usage failure otherwise.
double NumberArgument(const std::string& argument);

// The groups of commands.
void AddDataFileCommands(CLI::App& app, Work& chosen);
void AddColumnCommands(CLI::App& app, Work& chosen);
void AddPlotCommands(CLI::App& app, Work& chosen);
void AddLogCommands(CLI::App& app, Work& chosen);
void AddOtherCommands(CLI::App& app, Work& chosen);

}  // namespace vorquill21::tool
