#pragma once

#include <optional>

#include "Platform/Path.h"

namespace quarn {

/// Returns the path with every link resolved, or nothing if a component is missing or the path contains a
/// NUL.
std::optional<Path> resolved(const Path& path);

/// Returns whether the path contains "..". After a link this component leads to the parent of the link's
/// target, so it can't be removed from the text alone.
bool goesUp(const Path& path);

/// Resolves the links in an item's parent and leaves the item itself as it is, link or not. Returns the path
/// unchanged if the parent doesn't exist.
Path withParentResolved(const Path& path);

/// See `Places::currentFolder`.
Path currentFolder();

}  // namespace quarn
