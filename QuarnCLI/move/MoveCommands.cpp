#include "QuarnCLI/move/MoveCommands.h"

#include "QuarnCLI/Groups.h"

namespace quarn {
namespace {

constexpr const Command* commands[] = {
    &MoveCommands::drives, &MoveCommands::apps,    &MoveCommands::plan,
    &MoveCommands::all,    &MoveCommands::next,    &MoveCommands::one,
    &MoveCommands::path,   &MoveCommands::restore, &MoveCommands::back,
};

}  // namespace

constinit const Group moveGroup{
    .words = "move",
    .missingAction = "Missing move action.",
    .unknownAction = "Unknown move action: ",
    .commands = commands,
};

}  // namespace quarn
