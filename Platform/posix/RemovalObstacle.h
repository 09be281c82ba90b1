#pragma once

#include "Platform/Path.h"

namespace quarn {

/// Returns the error number with which removing an item would fail, or 0. Assumes that the item's folder may
/// be changed, and doesn't look at what lies below the item.
int removalObstacle(int folder, const char* name);

/// Does the same, but also checks the permissions of the item's folder.
int removalObstacle(const Path& item);

}  // namespace quarn
