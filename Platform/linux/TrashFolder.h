#pragma once

#include "Platform/Path.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

/// The open Trash of a volume. It is created if it is missing.
struct TrashFolder {
  Path path;
  Descriptor descriptor;
  int error = 0;  ///< not 0 if the volume has no Trash and none can be made

  /// Returns the Trash for items in `folder`, whose path must contain no links: the home folder's Trash if it
  /// is on the same volume, else the one at the top of the volume.
  static TrashFolder forItemsIn(const Path& folder, const Path& home);
};

}  // namespace quarn
