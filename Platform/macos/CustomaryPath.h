#pragma once

#include "Platform/Path.h"

namespace quarn {

/// Returns the customary path of an item on the data volume of the startup disk: "/Applications" for
/// "/System/Volumes/Data/Applications". Does so only if both paths lead to the same item; otherwise returns
/// the path unchanged.
Path withoutDataVolume(const Path& path);

/// Returns the customary path of an item below /private: "/tmp" for "/private/tmp". Does so only if the
/// shorter path exists and isn't in one of the system's other top folders; otherwise returns the path
/// unchanged.
Path withoutPrivateFolder(const Path& path);

}  // namespace quarn
