#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn {

/// What would stop the removal of an item, or a copy of it, in the middle. Found by one look at the item and
/// everything below it, which changes nothing and ends at the first obstacle.
struct Obstacles {
  std::optional<std::string> toCopying;    ///< the name, below the item, of a socket or a device
  std::optional<PlatformError> toRemoval;  ///< also a folder that can't be read

  static Obstacles find(const ReadOnlyPlatform& platform, const Path& item);
};

}  // namespace quarn
