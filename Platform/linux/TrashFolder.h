#pragma once

#include "Platform/Path.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

/// The open Trash of a volume, made if it is missing.
struct TrashFolder {
  Path path;
  Descriptor descriptor;
  int error = 0;  ///< not 0: the volume has none and none can be made

  /// For items in `folder`, which holds no links. The home folder's Trash, if that lies on the same
  /// volume, else one at the top of the volume.
  static TrashFolder forItemsIn(const Path& folder, const Path& home);
};

}  // namespace quarn
