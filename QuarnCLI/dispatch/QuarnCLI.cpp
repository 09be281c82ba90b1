#include "QuarnCLI/dispatch/QuarnCLI.h"

#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/dispatch/CommandTable.h"

namespace quarn {
namespace {

bool asksForHelp(const std::vector<std::string>& arguments) {
  return arguments.empty() || arguments[0] == "help" || arguments[0] == "--help" || arguments[0] == "-h";
}

ExitStatus carryOut(const Command& command, const Invocation& invocation) {
  if (const auto* looking = std::get_if<LookingHandler>(&command.handler)) {
    TemporaryFolders temporaryFolders(invocation.platform);
    return (*looking)({invocation.platform, temporaryFolders, invocation.args});
  }
  return std::get<ChangingHandler>(command.handler)(invocation);
}

}  // namespace

ExitStatus QuarnCLI::run(Platform& platform) const {
  if (asksForHelp(arguments)) {
    Console::print(CommandTable::usage());
    return ExitStatus::success;
  }
  const CommandTable::Match match = CommandTable::find(arguments);
  return carryOut(match.command, {platform, program, match.args});
}

}  // namespace quarn
