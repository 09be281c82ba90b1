#pragma once

#include <string>
#include <sys/types.h>

#include "Platform/Path.h"

namespace quarn {

/// The name of a file that a process writes before it takes its place.
std::string temporaryName(pid_t process, unsigned count);

/// Removes the files of that name from a folder whose process has ended without removing them. What
/// can't be read or removed stays, as does everything of another name or kind.
void removeLeftoverFiles(const Path& folder);

}  // namespace quarn
