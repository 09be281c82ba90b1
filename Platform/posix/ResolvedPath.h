#pragma once

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// Returns the path with every link resolved. A component is missing, links lead in a circle, or the path
/// contains a NUL: `fileReadNoSuchFile`.
Result<Path> resolved(const Path& path);

/// Returns whether the path contains "..". After a link this component leads to the parent of the link's
/// target, so it can't be removed from the text alone.
bool goesUp(const Path& path);

/// Resolves the links in an item's parent and leaves the item itself as it is, link or not. Returns the path
/// unchanged if the parent doesn't exist.
Path withParentResolved(const Path& path);

/// See `Places::currentFolder`.
Path currentFolder();

}  // namespace quarn
