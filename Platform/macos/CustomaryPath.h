#pragma once

#include "Platform/Path.h"

namespace quarn {

/// The customary name of what lies on the startup disk's data volume: "/Applications" for
/// "/System/Volumes/Data/Applications". Only if both lead to the same item; otherwise the path as it is.
Path withoutDataVolume(const Path& path);

/// The customary name of what lies below /private: "/tmp" for "/private/tmp". Only if the shorter path
/// exists and isn't one of the system's other folders; otherwise the path as it is.
Path withoutPrivateFolder(const Path& path);

}  // namespace quarn
