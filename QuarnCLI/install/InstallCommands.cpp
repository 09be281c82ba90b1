#include "QuarnCLI/install/InstallCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {
    &InstallCommands::options, &InstallCommands::inspect,       &InstallCommands::plan,
    &InstallCommands::install, &InstallCommands::sessions,      &InstallCommands::pending,
    &InstallCommands::resume,  &InstallCommands::uninstallPlan, &InstallCommands::uninstall,
};

}  // namespace

constinit const Group installGroup{
    .words = "install",
    .missingAction = "Missing install action.",
    .unknownAction = "Unknown install action: ",
    .commands = commands,
};

}  // namespace quarn
