#pragma once

#include "QuarnCLI/Command.h"

/// The rows of the commands of the group "move", each of which stands beside the command's code.
namespace quarn::MoveCommands {

extern const Command drives;
extern const Command apps;
extern const Command plan;
extern const Command all;
extern const Command next;
extern const Command one;
extern const Command path;
extern const Command restore;
extern const Command back;

}  // namespace quarn::MoveCommands
