#include "QuarnCLI/snapshot/SnapshotCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {&SnapshotCommands::create, &SnapshotCommands::list};

}  // namespace

constinit const Group snapshotGroup{
    .words = "snapshot",
    .missingAction =
        "Usage:\n"
        "  snapshot create\n"
        "  snapshot list",
    .unknownAction = "Unknown snapshot subcommand: ",
    .commands = commands,
};

}  // namespace quarn
