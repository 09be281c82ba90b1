#pragma once

#include "QuarnCLI/Command.h"

/// The commands of the group "uninstall", each with its row.
namespace quarn::UninstallCommands {

extern const Command apps;
extern const Command inspect;
extern const Command plan;
extern const Command uninstall;
extern const Command sessions;

}  // namespace quarn::UninstallCommands
