#pragma once

#include <optional>

#include "Platform/Path.h"

namespace quarn {

/// Every link resolved; nothing if a component is missing, or if the path holds a zero byte.
std::optional<Path> resolved(const Path& path);

/// Whether "..", the one component that can leave a link another way than it was entered, occurs.
bool goesUp(const Path& path);

/// The links on the way to an item resolved, the item itself left as it is, link or not. Where the way
/// doesn't exist, the path as it is.
Path withParentResolved(const Path& path);

/// `Places::currentFolder`.
Path currentFolder();

}  // namespace quarn
