#pragma once

#include "QuarnCLI/Command.h"

/// The rows of the commands of the group "scaffold".
namespace quarn::ScaffoldCommands {

extern const Command buildCommand;

}  // namespace quarn::ScaffoldCommands
