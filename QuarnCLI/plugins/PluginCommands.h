#pragma once

#include "QuarnCLI/Command.h"

/// The commands of the group "install plugins", each with its row.
namespace quarn::PluginCommands {

extern const Command inspect;
extern const Command install;

}  // namespace quarn::PluginCommands
