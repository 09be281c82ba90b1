#pragma once

#include <string>
#include <vector>

namespace quarn::room::Environment {

/// The caller's environment as the room's user has it: the user's own names and places set, what would leak
/// the host's set-up into the room left out. `kind` becomes QUARN_ROOM. Each element is "NAME=VALUE".
std::vector<std::string> forRoom(const std::string& kind, const std::string& cwd);

}  // namespace quarn::room::Environment
