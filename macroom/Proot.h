#pragma once

#include <string>

#include "Options.h"
#include "RoomKind.h"

namespace quarn::room::Proot {

/// A room for hosts that allow neither mounts nor namespaces: a real tree of folders that the program `proot`
/// makes look like the root. Drives are folders on another file system of the host.
RoomKind kind(const Options& options, const std::string& executable);

}  // namespace quarn::room::Proot
