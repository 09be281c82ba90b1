#pragma once

#include "Platform/posix/PathAt.h"

namespace quarn {

/// `FileSystem::move`. Gives 0 or the number of the failure. `destinationParent` is the folder that the
/// destination lies in.
int moveItem(const PathAt& source, const PathAt& destination, const Path& destinationParent);

}  // namespace quarn
