#pragma once

#include "Platform/Path.h"

namespace quarn {

/// The number with which the removal of an item would be refused, or 0. For an item whose folder may be
/// changed; of what lies below it, nothing is told.
int removalObstacle(int folder, const char* name);

/// The same, with the rights to the item's folder looked at too.
int removalObstacle(const Path& item);

}  // namespace quarn
