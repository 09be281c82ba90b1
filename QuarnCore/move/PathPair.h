#pragma once

#include "Platform/Platform.h"

namespace quarn::PathPair {

/// Throws `MoveRefused` unless `source` can be copied to `destination`, removed and replaced by a link
/// without taking the copy, or anything else, with it: it exists, neither lies inside the other, and a
/// file isn't to become a folder that is there already. Goes by what the paths lead to, since behind a
/// link one folder has two names.
void requireSafe(const ReadOnlyPlatform& platform, const Path& source, const Path& destination);

}  // namespace quarn::PathPair
