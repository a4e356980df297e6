#include <filesystem>

#include "other/commands.hpp"
#include "other/description.hpp"

namespace vorquill21::tool {
namespace {

/// Text as roff wants it: backslashes, hyphens, and control characters at line starts are written out.
std::string Roff(const std::string& text) {
  std::string roff;
  bool startsLine = true;
  for (const char character : text) {
    if (startsLine && (character == '.' || character == '\'')) roff += "\\&";
    if (character == '\\') {
      roff += "\\e";
    } else if (character == '-') {
      roff += "\\-";
    } else {
      roff += character;
    }
    startsLine = character == '\n';
  }
  return roff;
}

std::string OptionText(const OptionDescription& option) {
  std::string text = ".TP\n";
  std::string names;
  for (const std::string& name : option.names)
    names += (names.empty() ? "\\fB" : ", \\fB") + Roff(name) + "\\fR";
  text += names + (option.argument.empty() ? "" : " \\fI" + Roff(option.argument) + "\\fR");
  return text + "\n" + Roff(option.description) + "\n";
}

/// The part of a page that tells how to call a command.
std::string CommandText(const CommandDescription& command) {
  std::string text = "\\fBvorquill21";
  for (const std::string& word : command.path) text += " " + Roff(word);
  text += "\\fR";
  for (const ArgumentDescription& argument : command.arguments)
    text += " \\fI" + Roff(argument.Usage()) + "\\fR";
  text += " [\\fIoptions\\fR]\n.PP\n" + Roff(command.description) + ".\n";
  for (const ArgumentDescription& argument : command.arguments) {
    text += ".TP\n\\fI" + Roff(argument.name) + "\\fR\n" + Roff(argument.description) + "\n";
  }
  for (const OptionDescription& option : command.options) text += OptionText(option);
  if (!command.footer.empty()) text += ".PP\n.nf\n" + Roff(command.footer) + "\n.fi\n";
  return text;
}

std::string PageName(const CommandDescription& command) {
  return "vorquill21" + std::string(command.path.empty() ? "" : "-") + command.Name("-");
}

/// The page of a command and those below it.
std::string Page(const CommandDescription& command) {
  std::string text =
      ".TH " + PageName(command) + " 1 \"\" \"vorquill21 " VORQUILL21_VERSION "\" \"User commands\"\n";
  text += ".SH NAME\n" + Roff(PageName(command)) + " \\- " + Roff(command.description) + "\n";
  text += ".SH SYNOPSIS\n" + CommandText(command);
  if (!command.commands.empty()) text += ".SH COMMANDS\n";
  for (const CommandDescription& below : command.commands) {
    if (command.path.empty()) {
      text += ".TP\n\\fB" + Roff(PageName(below)) + "\\fR(1)\n" + Roff(below.description) + "\n";
    } else {
      text += ".SS " + Roff(below.Name(" ")) + "\n" + CommandText(below);
    }
  }
  if (!command.path.empty()) text += ".SH SEE ALSO\n\\fBvorquill21\\fR(1)\n";
  return text;
}

/// Not for users: the build writes the manual pages with it.
struct ManualCommand {
  std::string folder;
  const CLI::App* program = nullptr;

  void Declare(CLI::App& command) {
    command.group("");
    program = command.get_parent();
    command.add_option("FOLDER", folder, "Where to write the pages")->required()->type_name("");
  }

  ExitCode Run(Session& session, Result&) const {
    const CommandDescription described = Describe(*program);
    WritePage(session, described);
    for (const CommandDescription& command : described.commands) WritePage(session, command);
    return ExitCode::kGood;
  }

 private:
  void WritePage(Session& session, const CommandDescription& command) const {
    session.WriteFile((std::filesystem::path(folder) / (PageName(command) + ".1")).string(), Page(command));
  }
};

}  // namespace

void AddManual(CLI::App& app, Work& chosen) {
  AddCommand<ManualCommand>(app, chosen, "manual", "Write the manual pages", "manual build/man");
}

}  // namespace vorquill21::tool
