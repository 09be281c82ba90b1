#pragma once

#include "Platform/Path.h"

namespace quarn {

/// Returns when all that was written to the volume of an item has reached it. 0, or the number of the
/// failure.
int flushVolume(const Path& item);

}  // namespace quarn
