#pragma once

#include "Platform/Platform.h"

/// Where other volumes are mounted. Paths count as what they lead to; a spelling in the other Unicode form is
/// the same one.
namespace quarn::MountPoints {

/// Something is mounted at that place.
bool contains(const ReadOnlyPlatform& platform, const Path& place);
/// The mount point that holds a place, or will hold it once it is made: the innermost around it.
Path holding(const ReadOnlyPlatform& platform, const Path& place);
/// Throws `MoveRefused` if an item is a mount point or holds one: a copy would take that volume's contents
/// along, and a removal would empty it. So does a list of mount points that can't be read.
void refuseInside(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::MountPoints
