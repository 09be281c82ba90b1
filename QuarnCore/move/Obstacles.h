#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

namespace quarn {

/// What would stop removing or copying an item halfway. Found by a single walk through the item, which
/// changes nothing and ends at the first obstacle.
struct Obstacles {
  std::optional<std::string> toCopying;    ///< the name of a socket or device, relative to the item
  std::optional<PlatformError> toRemoval;  ///< an error, also for a folder that can't be read

  /// Returns whether an item of this kind can be copied. Sockets and devices can't.
  static bool canBeCopied(FileKind kind);
  static Obstacles find(const ReadOnlyPlatform& platform, const Path& item);
};

}  // namespace quarn
