#pragma once

#include <string>
#include <vector>

#include "Options.h"
#include "RoomKind.h"

namespace quarn::room::Namespaces {

/// The ways to a room of real mounts, best first: with the caller's own right to mount; in a user namespace;
/// in a user namespace where a fresh /proc is refused, so that the host's processes are seen.
std::vector<RoomKind> kinds(const Options& options, const std::string& executable);

}  // namespace quarn::room::Namespaces
