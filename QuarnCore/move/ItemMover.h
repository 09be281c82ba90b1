#pragma once

#include "Platform/Platform.h"

namespace quarn::ItemMover {

/// Gives an item another place, at which nothing may stand: a rename on one volume; elsewhere a copy, which
/// is written out and compared before the source is removed. Throws `PlatformError` or `MoverError`. Until
/// the removal begins the source is whole and a copy that failed has been removed; a removal that fails
/// leaves the copy whole.
void move(Platform& platform, const Path& source, const Path& destination);

/// Throws unless `move` could carry an item off to a place that lies in `folder`: no volume is mounted
/// inside, and, where it takes a copy, nothing in it is of a kind that can't be copied or stands in the way
/// of the removal. Changes nothing.
void requireMovable(const ReadOnlyPlatform& platform, const Path& item, const Path& folder);

}  // namespace quarn::ItemMover
