#pragma once

#include "Platform/Platform.h"

namespace quarn::ItemMover {

/// Moves an item to a path where nothing may exist. On the same volume this is a rename. Otherwise the item
/// is copied, and the copy is written out and compared before the source is removed. Throws `PlatformError`
/// or `MoverError`. Until the removal begins, the source is complete and a failed copy is removed; if the
/// removal fails, the copy is complete.
void move(Platform& platform, const Path& source, const Path& destination);

/// Throws unless `move` could move an item into `folder`: no volume may be mounted inside it. If a copy is
/// needed, nothing in the item may be of a kind that can't be copied, or prevent the removal. Changes
/// nothing.
void requireMovable(const ReadOnlyPlatform& platform, const Path& item, const Path& folder);

}  // namespace quarn::ItemMover
