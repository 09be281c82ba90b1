#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Path.h"

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

}  // namespace quarn
