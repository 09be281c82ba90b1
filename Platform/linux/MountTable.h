#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// A volume: the startup volume "/", or one that is mounted directly below /Volumes.
struct MountedVolume {
  Path mountPoint;
  std::string fileSystemType;  ///< empty if the table doesn't contain it
  bool isReadOnly = false;

  /// Returns "Macintosh HD" for the startup volume, and the last component of the mount point for any other.
  std::string name() const;
  /// Returns whether the name begins with ".".
  bool isHidden() const;
};

namespace MountTable {

/// Returns the volumes in the order of the table, hidden ones included. If a mount point occurs more than
/// once its last line counts. "/" is always included. Returns nothing, with `errno` set, if the table can't
/// be read.
std::optional<std::vector<MountedVolume>> volumes();
std::optional<std::vector<MountedVolume>> volumesIn(const char* table);

/// Returns all mount points in the order of the table. Returns nothing, with `errno` set, if the table can't
/// be read.
std::optional<std::vector<Path>> mountPoints();

/// Returns the volume that a path lies on, judged by the text of the path, which must contain no links.
MountedVolume holding(const std::vector<MountedVolume>& volumes, const Path& path);

}  // namespace MountTable
}  // namespace quarn
