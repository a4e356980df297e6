#include <algorithm>

#include "other/commands.hpp"
#include "other/description.hpp"

namespace vorquill21::tool {
namespace {

std::string Joined(const std::vector<std::string>& words, const std::string& between) {
  std::string joined;
  for (const std::string& word : words) joined += (joined.empty() ? "" : between) + word;
  return joined;
}

/// Calls `visit` for the program and every command below it.
template <typename Visit>
void ForEachCommand(const CommandDescription& command, Visit visit) {
  visit(command);
  for (const CommandDescription& below : command.commands) ForEachCommand(below, visit);
}

std::string Replaced(std::string text, const std::string& sought, const std::string& replacement) {
  for (std::size_t at = text.find(sought); at != std::string::npos;
       at = text.find(sought, at + replacement.size())) {
    text.replace(at, sought.size(), replacement);
  }
  return text;
}

/// Between single quotes of any shell.
std::string Quoted(const std::string& text) {
  return "'" + Replaced(text, "'", "'\\''") + "'";
}

std::vector<std::string> NamesOf(const std::vector<CommandDescription>& commands) {
  std::vector<std::string> names;
  for (const CommandDescription& command : commands) names.push_back(command.path.back());
  return names;
}

std::vector<std::string> NamesOf(const std::vector<OptionDescription>& options) {
  std::vector<std::string> names;
  for (const OptionDescription& option : options)
    names.insert(names.end(), option.names.begin(), option.names.end());
  return names;
}

/// Options that every command takes.
std::vector<OptionDescription> GlobalOptions(const CommandDescription& program) {
  std::vector<OptionDescription> global;
  std::ranges::copy_if(program.options, std::back_inserter(global),
                       [](const OptionDescription& option) { return option.names.back() == "--json"; });
  return global;
}

std::vector<std::string> ArgumentChoices(const CommandDescription& command) {
  std::vector<std::string> choices;
  for (const ArgumentDescription& argument : command.arguments) {
    choices.insert(choices.end(), argument.choices.begin(), argument.choices.end());
  }
  return choices;
}

constexpr const char* kBashBeginning = R"(# Completion of vorquill21 for bash.
_vorquill21() {
  local current=${COMP_WORDS[COMP_CWORD]} command= words= options= word
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case " $(_vorquill21_words "$command") " in *" $word "*) command=${command:+$command }$word ;; esac
  done
  case "$command ${COMP_WORDS[COMP_CWORD-1]}" in
)";
constexpr const char* kBashMiddle = R"(  esac
  _vorquill21_words "$command" >/dev/null
  case $current in
    -*) COMPREPLY=($(compgen -W "$options" -- "$current")) ;;
    *) COMPREPLY=($(compgen -W "$words" -- "$current")) ;;
  esac
}
# Sets words and options to what may follow a command, and prints the words.
_vorquill21_words() {
  words= options=
  case $1 in
)";
constexpr const char* kBashEnd = R"(  esac
  echo "$words"
}
complete -o default -F _vorquill21 vorquill21
)";

std::string BashWords(const CommandDescription& command) {
  std::vector<std::string> names = NamesOf(command.commands);
  const std::vector<std::string> choices = ArgumentChoices(command);
  names.insert(names.end(), choices.begin(), choices.end());
  std::vector<std::string> options = NamesOf(command.options);
  if (!command.path.empty()) options.emplace_back("--json");
  return "    " + Quoted(command.Name(" ")) + ") words=" + Quoted(Joined(names, " ")) +
         " options=" + Quoted(Joined(options, " ")) + " ;;\n";
}

std::string BashChoices(const CommandDescription& command) {
  std::string cases;
  for (const OptionDescription& option : command.options) {
    if (option.choices.empty()) continue;
    for (const std::string& name : option.names) {
      cases += "    " + Quoted(command.Name(" ") + " " + name) + ") COMPREPLY=($(compgen -W " +
               Quoted(Joined(option.choices, " ")) + " -- \"$current\")); return ;;\n";
    }
  }
  return cases;
}

std::string ForBash(const CommandDescription& program) {
  std::string words;
  std::string choices;
  ForEachCommand(program, [&](const CommandDescription& command) {
    words += BashWords(command);
    choices += BashChoices(command);
  });
  return kBashBeginning + choices + kBashMiddle + words + kBashEnd;
}

/// Characters that mean something in the specifications of _arguments.
std::string ForSpecification(const std::string& text) {
  std::string escaped;
  for (const char character : text) {
    if (std::string_view("[]:\\").find(character) != std::string_view::npos) escaped += '\\';
    escaped += character;
  }
  return escaped;
}

std::string ZshAction(const std::vector<std::string>& choices) {
  return choices.empty() ? "_files" : "(" + Joined(choices, " ") + ")";
}

std::string ZshFunction(const CommandDescription& command, const std::vector<OptionDescription>& global) {
  std::vector<OptionDescription> options = command.options;
  if (!command.path.empty()) options.insert(options.end(), global.begin(), global.end());
  std::string text = "_vorquill21" + std::string(command.path.empty() ? "" : "_") + command.Name("_") +
                     "() {\n  local line state\n  _arguments -C";
  for (const OptionDescription& option : options) {
    const std::string action =
        option.argument.empty() ? ""
                                : ":" + ForSpecification(option.argument) + ":" + ZshAction(option.choices);
    for (const std::string& name : option.names) {
      text += " \\\n    " + Quoted(name + "[" + ForSpecification(option.description) + "]" + action);
    }
  }
  if (command.commands.empty()) {
    for (const ArgumentDescription& argument : command.arguments) {
      text += " \\\n    " + Quoted((argument.isRepeated ? "*:" : ":") + ForSpecification(argument.name) +
                                   ":" + ZshAction(argument.choices));
    }
    return text + "\n}\n";
  }
  text += " \\\n    '1: :->command' '*:: :->arguments'\n  case $state in\n    command) _describe command \"(";
  for (const CommandDescription& below : command.commands)
    text += below.path.back() + "\\:" + Quoted(Replaced(below.description, ":", "\\:")) + " ";
  text.pop_back();
  text += ")\" ;;\n    arguments) case $line[1] in\n";
  for (const CommandDescription& below : command.commands) {
    text += "      " + below.path.back() + ") _vorquill21_" + below.Name("_") + " ;;\n";
  }
  return text + "    esac ;;\n  esac\n}\n";
}

std::string ForZsh(const CommandDescription& program) {
  std::string text = "#compdef vorquill21\n# Completion of vorquill21 for zsh.\n";
  const std::vector<OptionDescription> global = GlobalOptions(program);
  ForEachCommand(program, [&](const CommandDescription& command) { text += ZshFunction(command, global); });
  return text +
         "if [ \"$funcstack[1]\" = _vorquill21 ]; then\n  _vorquill21 \"$@\"\nelse\n  compdef _vorquill21 "
         "vorquill21\nfi\n";
}

constexpr const char* kFishBeginning = R"(# Completion of vorquill21 for fish.
# The words of the command line so far, without options.
function __vorquill21_words
    set -l words (commandline -opc | string match -v -- '-*')
    set -e words[1]
    printf '%s\n' $words
end
# The command line has come to exactly this command.
function __vorquill21_is
    set -l words (__vorquill21_words)
    test "$words" = "$argv"
end
# The command line has come to this command, or to its arguments.
function __vorquill21_in
    set -l words (__vorquill21_words)
    set -l last (count $argv)
    test (count $words) -ge $last; and test "$words[1..$last]" = "$argv"
end
)";

/// The lines that complete what follows one command.
std::string FishLines(const CommandDescription& command) {
  const std::string condition =
      (command.commands.empty() ? "__vorquill21_in " : "__vorquill21_is ") + command.Name(" ");
  const std::string start = "complete -c vorquill21 -n " + Quoted(condition);
  std::string text;
  for (const CommandDescription& below : command.commands) {
    text += start + " -f -a " + below.path.back() + " -d " + Quoted(below.description) + "\n";
  }
  const std::vector<std::string> choices = ArgumentChoices(command);
  if (!choices.empty()) text += start + " -f -a " + Quoted(Joined(choices, " ")) + "\n";
  for (const OptionDescription& option : command.options) {
    text += command.path.empty() ? "complete -c vorquill21" : start;
    for (const std::string& name : option.names) {
      text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    if (!option.argument.empty()) {
      text += option.choices.empty() ? " -r" : " -x -a " + Quoted(Joined(option.choices, " "));
    }
    text += " -d " + Quoted(option.description) + "\n";
  }
  return text;
}

std::string ForFish(const CommandDescription& program) {
  std::string text = kFishBeginning;
  ForEachCommand(program, [&text](const CommandDescription& command) { text += FishLines(command); });
  return text;
}

struct CompletionCommand {
  std::string shell;
  const CLI::App* program = nullptr;

  void Declare(CLI::App& command) {
    program = command.get_parent();
    LimitTo(command.add_option("SHELL", shell, "The shell: bash, zsh or fish")->required(),
            {"bash", "zsh", "fish"});
  }

  ExitCode Run(Session& session, Result& result) const {
    const CommandDescription described = Describe(*program);
    const std::string script = shell == "bash"  ? ForBash(described)
                               : shell == "zsh" ? ForZsh(described)
                                                : ForFish(described);
    if (!session.wantsJson) {
      session.GetTerminal().Write(script);
      result.Silence();
      return ExitCode::kGood;
    }
    result.Add("shell", "", shell);
    result.Add("script", "", script);
    return ExitCode::kGood;
  }
};

}  // namespace

void AddCompletion(CLI::App& app, Work& chosen) {
  AddCommand<CompletionCommand>(app, chosen, "completion",
                                "Print a script that completes command lines in a shell",
                                "completion bash >vorquill21.bash");
}

}  // namespace vorquill21::tool
