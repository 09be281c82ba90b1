#pragma once

#include "Platform/Platform.h"

namespace quarn::MoveDestination {

/// Returns where a data path goes below `dataParent`: an item in the home folder keeps its path relative to
/// it, an item below "/Library/" goes below "System/", and anything else goes under its own name.
Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent);
Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent,
                     const Path& home);

}  // namespace quarn::MoveDestination
