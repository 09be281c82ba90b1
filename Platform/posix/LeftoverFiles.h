#pragma once

#include <string>
#include <sys/types.h>

#include "Platform/Path.h"

namespace quarn {

/// Returns the name of the temporary file that a process writes before renaming it into place.
std::string temporaryName(pid_t process, unsigned count);

/// Removes temporary files whose process has ended without removing them. Leaves what can't be read or
/// removed, and every item of another name or kind.
void removeLeftoverFiles(const Path& folder);

}  // namespace quarn
