#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"
#include "Platform/Platform.h"

namespace quarn {

/// A mounted volume. Capacities are in bytes, and 0 if unknown.
struct DriveInfo {
  std::string id;    ///< the mount point as text
  std::string name;  ///< the volume's name, or the last component of its mount point
  Path mountPath;
  std::int64_t totalBytes = 0;
  std::int64_t freeBytes = 0;  ///< available for important use
  bool isInternal = false;     ///< false if unknown
  bool isWritable = true;      ///< true if unknown
  std::optional<std::string> filesystem;
  bool operator==(const DriveInfo&) const = default;
};

namespace VolumeCapacityProbe {
/// Returns the bytes available for important use on the volume that holds an existing item, or 0 if unknown.
std::int64_t freeBytes(const ReadOnlyPlatform& platform, const Path& item);
}  // namespace VolumeCapacityProbe

namespace DriveScanner {
/// Returns the volumes that the Finder shows: internal ones first, then by name. Skips those that can't be
/// read.
std::vector<DriveInfo> scan(const ReadOnlyPlatform& platform);
}  // namespace DriveScanner

}  // namespace quarn
