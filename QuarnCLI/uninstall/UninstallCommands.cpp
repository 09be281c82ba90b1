#include "QuarnCLI/uninstall/UninstallCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {&UninstallCommands::apps, &UninstallCommands::inspect,
                                       &UninstallCommands::plan, &UninstallCommands::uninstall,
                                       &UninstallCommands::sessions};

}  // namespace

constinit const Group uninstallGroup{
    .words = "uninstall",
    .missingAction = "Missing uninstall action.",
    .unknownAction = "Unknown uninstall action: ",
    .commands = commands,
};

}  // namespace quarn
