#pragma once

#include <string>

#include "RoomKind.h"

namespace quarn::room::Supervisor {

struct Outcome {
  bool entered = false;
  int status = 0;      // of the command, when entered
  std::string reason;  // why not, otherwise
};

/// Makes the room, runs its command to the end, passing signals on, and leaves the terminal as it was found.
Outcome run(const RoomKind& kind);

}  // namespace quarn::room::Supervisor
