#pragma once

#include "Platform/Platform.h"

namespace quarn::MoveDestination {

/// Where a data path lands below `dataParent`: what lies in the home keeps its place relative to it,
/// what lies below "/Library/" goes below "System/", and anything else goes by its own name.
Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent);
Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent,
                     const Path& home);

}  // namespace quarn::MoveDestination
