#pragma once

#include "Platform/posix/PathAt.h"

namespace quarn {

/// Copies an item with everything below it to a place where nothing stands. Gives 0 or the number of the
/// failure; what was made by then has been removed again, and nothing else. An item that holds its own
/// destination, or a mounted volume, can't be copied.
int copyTree(const PathAt& source, const PathAt& destination, const Path& destinationParent);

/// Gives a folder or a file the owner, attributes, mode and times of another one. 0, or the number of the
/// failure.
int copyItemMetadata(const PathAt& source, const PathAt& destination);

}  // namespace quarn
