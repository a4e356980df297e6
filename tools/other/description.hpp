#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace vorquill21::tool {

/// An option of a command, as its help tells of it.
struct OptionDescription {
  std::vector<std::string> names;  ///< "-o", "--output"
  std::string description;
  std::string argument;              ///< "FILE"; empty for a flag
  std::vector<std::string> choices;  ///< what the argument may be, when that is limited
};

/// A positional argument.
struct ArgumentDescription {
  std::string name;
  std::string description;
  bool isRequired = false;
  bool isRepeated = false;
  std::vector<std::string> choices;

  /// FILE, [FILE], FILE... or [FILE...].
  std::string Usage() const;
};

/// A command with all that can be said after it.
struct CommandDescription {
  std::vector<std::string> path;  ///< {"table", "show"}; empty for the program itself
  std::string description;
  std::string footer;
  std::vector<OptionDescription> options;
  std::vector<ArgumentDescription> arguments;
  std::vector<CommandDescription> commands;

  /// The words of the path joined.
  std::string Name(const std::string& separator) const;
};

/// The description of a parser; what has an empty group stays hidden.
CommandDescription Describe(const CLI::App& app);

}  // namespace vorquill21::tool
