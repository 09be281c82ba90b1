#pragma once

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
  bool throughTracer = false;  // the first word is a tracer that is deaf to signals; its only child is not
  std::vector<TemporaryFolder> folders;
};

}  // namespace quarn::room
