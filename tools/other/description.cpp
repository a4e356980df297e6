#include "other/description.hpp"

namespace vorquill21::tool {
namespace {

/// An argument that is limited to words has these as its type, with bars between them.
std::vector<std::string> ChoicesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  std::vector<std::string> choices;
  if (type.find('|') == std::string::npos) return choices;
  std::istringstream words(type);
  for (std::string word; std::getline(words, word, '|');) choices.push_back(word);
  return choices;
}

OptionDescription DescribeOption(const CLI::Option& option) {
  OptionDescription described{{},
                              option.get_description(),
                              option.get_items_expected_max() == 0 ? "" : option.get_type_name(),
                              ChoicesOf(option)};
  for (const std::string& name : option.get_snames()) described.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) described.names.push_back("--" + name);
  return described;
}

CommandDescription DescribeAt(const CLI::App& app, const std::vector<std::string>& path) {
  CommandDescription described{path, app.get_description(), app.get_footer(), {}, {}, {}};
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group().empty()) continue;
    if (option->get_positional()) {
      described.arguments.push_back({option->get_name(true), option->get_description(),
                                     option->get_required(), option->get_items_expected_max() > 1,
                                     ChoicesOf(*option)});
    } else {
      described.options.push_back(DescribeOption(*option));
    }
  }
  for (const CLI::App* command : app.get_subcommands({})) {
    if (command->get_group().empty()) continue;
    std::vector<std::string> below = path;
    below.push_back(command->get_name());
    described.commands.push_back(DescribeAt(*command, below));
  }
  return described;
}

}  // namespace

std::string ArgumentDescription::Usage() const {
  const std::string usage = name + (isRepeated ? "..." : "");
  return isRequired ? usage : "[" + usage + "]";
}

std::string CommandDescription::Name(const std::string& separator) const {
  std::string name;
  for (const std::string& word : path) name += (name.empty() ? "" : separator) + word;
  return name;
}

CommandDescription Describe(const CLI::App& app) {
  return DescribeAt(app, {});
}

}  // namespace vorquill21::tool
