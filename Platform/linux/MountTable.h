#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// A volume: the startup volume "/", or one mounted directly below /Volumes.
struct MountedVolume {
  Path mountPoint;
  std::string fileSystemType;  ///< empty if the table doesn't tell it
  bool isReadOnly = false;

  /// "Macintosh HD" for the startup volume.
  std::string name() const;
  /// The name begins with ".".
  bool isHidden() const;
};

namespace MountTable {

/// The volumes in the order of the table, hidden ones included, one for each mount point: its last line
/// counts. "/" is always among them. Nothing if the table can't be read; then `errno` tells why.
std::optional<std::vector<MountedVolume>> volumes();
std::optional<std::vector<MountedVolume>> volumesIn(const char* table);

/// The place of every mount in the table, in its order. Nothing if it can't be read; then `errno` tells why.
std::optional<std::vector<Path>> mountPoints();

/// The volume below which a path without links lies; by its text alone.
MountedVolume holding(const std::vector<MountedVolume>& volumes, const Path& path);

}  // namespace MountTable
}  // namespace quarn
