#pragma once

#include "Platform/Path.h"

namespace quarn {

/// Returns once everything written to the volume of an item has reached it. Returns 0 or the error number.
int flushVolume(const Path& item);

}  // namespace quarn
