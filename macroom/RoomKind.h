#pragma once

#include <functional>
#include <string>

#include "Launch.h"

namespace quarn::room {

/// One way to make a room.
struct RoomKind {
  std::string name;
  int namespaces = 0;             // CLONE_NEW… of the process in which `enter` runs
  std::function<Launch()> enter;  // throws RoomError where this way is closed
};

}  // namespace quarn::room
