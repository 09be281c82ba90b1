#include "QuarnCLI/plugins/PluginCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {&PluginCommands::inspect, &PluginCommands::install};

}  // namespace

constinit const Group installPluginsGroup{
    .words = "install plugins",
    .missingAction = "Missing plugins action. Try: inspect | install",
    .unknownAction = "Unknown plugins action: ",
    .commands = commands,
};

}  // namespace quarn
