#pragma once

#include "Platform/Platform.h"

/// Where other volumes are mounted. Paths are compared with their links resolved and by canonical
/// equivalence.
namespace quarn::MountPoints {

/// Returns whether something is mounted at this path.
bool contains(const ReadOnlyPlatform& platform, const Path& place);
/// Returns the innermost mount point that holds a path, or will hold it once it exists.
Path holding(const ReadOnlyPlatform& platform, const Path& place);
/// Throws `MoveRefused` if an item is a mount point or contains one: a copy would include that volume's
/// contents, and a removal would empty it. Also throws if the list of mount points can't be read.
void refuseInside(const ReadOnlyPlatform& platform, const Path& item);
/// Does the same, but lets an item pass that is a mount point itself.
void refuseBelow(const ReadOnlyPlatform& platform, const Path& item);
/// Returns whether `refuseInside` lets an item pass.
bool areNoneInside(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::MountPoints
