#pragma once

#include "RoomKind.h"
#include "Sys.h"

namespace quarn::room::Keeper {

/// The life of the room's first process: enters, starts the command, passes signals on, reaps what others
/// leave, ends everything with the command or with the process that made the room, and removes what it made.
/// Writes to `readiness` why the room cannot be entered; once it is entered, closes it with nothing written.
/// Gives the command's exit status.
int keep(const RoomKind& kind, Descriptor readiness);

/// The same once more under a tracer, which by itself would wait for all that the command leaves running:
/// starts the command, passes signals on, and ends everything with it. The command's exit status.
int keepInside(const std::vector<std::string>& command);

}  // namespace quarn::room::Keeper
