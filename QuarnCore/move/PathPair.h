#pragma once

#include "Platform/Platform.h"

namespace quarn::PathPair {

/// Throws `MoveRefused` unless `source` can be copied to `destination` and then be replaced by a link without
/// also removing the copy or anything else: the source must exist, neither path may lie inside the other, and
/// a file must not replace an existing folder. Compares what the paths lead to, because links give a folder
/// several paths.
void requireSafe(const ReadOnlyPlatform& platform, const Path& source, const Path& destination);

}  // namespace quarn::PathPair
