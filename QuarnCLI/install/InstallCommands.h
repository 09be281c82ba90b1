#pragma once

#include "QuarnCLI/Command.h"

/// The commands of the group "install", each with its row.
namespace quarn::InstallCommands {

extern const Command options;
extern const Command inspect;
extern const Command plan;
extern const Command install;
extern const Command sessions;
extern const Command pending;
extern const Command resume;
extern const Command uninstallPlan;
extern const Command uninstall;

}  // namespace quarn::InstallCommands
