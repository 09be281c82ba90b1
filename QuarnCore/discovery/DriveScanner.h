#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"
#include "Platform/Platform.h"

namespace quarn {

/// A mounted volume. Capacities are bytes, 0 where unknown.
struct DriveInfo {
  std::string id;    ///< the mount path as text
  std::string name;  ///< the volume's name, or else the last component of its mount path
  Path mountPath;
  std::int64_t totalBytes = 0;
  std::int64_t freeBytes = 0;  ///< what is available for important use
  bool isInternal = false;     ///< unknown counts as external
  bool isWritable = true;      ///< unknown counts as writable
  std::optional<std::string> filesystem;
  bool operator==(const DriveInfo&) const = default;
};

namespace VolumeCapacityProbe {
/// Bytes available for important use on the volume that holds an existing item; 0 means unknown.
std::int64_t freeBytes(const ReadOnlyPlatform& platform, const Path& item);
}  // namespace VolumeCapacityProbe

namespace DriveScanner {
/// The browsable volumes: internal ones first, then by name. What can't be read is left out.
std::vector<DriveInfo> scan(const ReadOnlyPlatform& platform);
}  // namespace DriveScanner

}  // namespace quarn
