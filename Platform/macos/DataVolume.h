#pragma once

#include "Platform/Path.h"

namespace quarn {

/// The customary name of what lies on the startup disk's data volume: "/Applications" for
/// "/System/Volumes/Data/Applications". Only if both lead to the same item; otherwise the path as it is.
Path withoutDataVolume(const Path& path);

}  // namespace quarn
