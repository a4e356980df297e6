// The command-line companion of the library: see docs/command-line.md.

#include <exception>
#include <iostream>
#include <new>

#include "program/arguments.hpp"

namespace {

using namespace vorquill21;
using namespace vorquill21::tool;

ExitCode RunChosen(Session& session, Program& program) {
  Result result;
  ExitCode code;
  {
    const CLI::App& command = *program.App().get_subcommands().front();
    const std::vector<CLI::App*> below = command.get_subcommands();
    const bool follows = !below.empty() && below.front()->get_name() == "follow";
    Progress progress(command.get_name(), session.GetTerminal().ErrorIsTerminal() && !follows);
    session.ReportTo(&progress);
    code = program.Chosen()(session, result);
    session.ReportTo(nullptr);
  }
  if (result.IsSilent()) return code;
  Terminal& terminal = session.GetTerminal();
  terminal.Write(session.wantsJson ? result.ForPrograms() : result.ForPeople(terminal.OutputHasColour()));
  return code;
}

/// What is wrong with the command line. A word where a command should stand is named.
std::string Reason(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> unknown = app.remaining(/*recurse=*/true);
  const bool lacksCommand = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr &&
                            std::string_view(error.what()) == "A subcommand is required";
  if (!lacksCommand || unknown.empty()) return error.what();
  return "there is no command " + Typed(unknown.front()) + "; --help lists them";
}

ExitCode Run(Session& session, int argumentCount, char** arguments) {
  Program program;
  try {
    program.App().parse(ParserArguments(argumentCount, arguments));
    session.wantsJson = program.WantsJson();
  } catch (const CLI::ParseError& request) {
    std::ostringstream output;
    std::ostringstream complaint;
    if (program.App().exit(request, output, complaint) == 0) {
      session.GetTerminal().Write(output.str());
      return ExitCode::kGood;
    }
    throw Failure(ExitCode::kUsage, Reason(program.App(), request));
  }
  return RunChosen(session, program);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  Session session;
  const auto endWith = [&session](ExitCode code, const char* reason) {
    session.GetTerminal().Complain(reason);
    return static_cast<int>(code);
  };
  try {
    return static_cast<int>(Run(session, argumentCount, arguments));
  } catch (const Failure& failure) {
    return endWith(failure.Code(), failure.what());
  } catch (const LibraryError& error) {
    return endWith(ExitCodeOf(error), error.what());
  } catch (const std::bad_alloc&) {
    return endWith(ExitCode::kRefused, "Out of memory");
  } catch (const std::exception& error) {
    return endWith(ExitCode::kRefused, error.what());
  }
}
