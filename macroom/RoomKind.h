#pragma once

#include <functional>
#include <string>
#include <vector>

#include "TemporaryFolder.h"

namespace quarn::room {

/// What is to be started once the room stands, and what has to be removed when it has ended.
struct Launch {
  std::vector<std::string> words;  // the first is looked for in the room's PATH
  std::vector<std::string> environment;
  std::string cwd;  // empty: stay where the process is
  bool keepRights = false;
  bool throughTracer = false;  // the first word is a tracer that ignores signals; its only child takes them
  std::vector<TemporaryFolder> folders;
};

/// One way to make a room.
struct RoomKind {
  std::string name;
  int namespaces = 0;             // CLONE_NEW… of the process in which `enter` runs
  std::function<Launch()> enter;  // throws RoomError where this way is closed
};

}  // namespace quarn::room
