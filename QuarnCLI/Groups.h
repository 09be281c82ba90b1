#pragma once

#include "QuarnCLI/Command.h"

/// The groups of commands. Each is defined in the folder of its name, with the rows of its commands.
namespace quarn {

extern const Group installGroup;
extern const Group installPluginsGroup;
extern const Group uninstallGroup;
extern const Group backupGroup;
extern const Group moveGroup;
extern const Group healthGroup;
extern const Group dedupeGroup;
extern const Group snapshotGroup;
extern const Group scaffoldGroup;

}  // namespace quarn
