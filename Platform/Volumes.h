#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// What a volume reports about itself. Any answer may be absent. Capacities are in bytes.
struct VolumeProperties {
  std::optional<std::string> name;
  std::optional<std::int64_t> totalCapacity;
  /// Includes space that the system would purge to make room. A Mac may report 0 for a volume of another file
  /// system than its own.
  std::optional<std::int64_t> availableCapacityForImportantUsage;
  std::optional<bool> isBrowsable;
  std::optional<bool> isInternal;
  std::optional<bool> isReadOnly;
  std::optional<std::string> localizedFormatDescription;
  std::optional<std::int64_t> availableCapacity;  ///< without what the system would purge
  bool operator==(const VolumeProperties&) const = default;
};

class Volumes {
 public:
  virtual ~Volumes() = default;
  /// Returns mount points in the system's order, without hidden volumes.
  virtual Result<std::vector<Path>> mounted() const = 0;
  /// Returns every mount point, including hidden volumes and mounts that aren't drives.
  virtual Result<std::vector<Path>> mountPoints() const = 0;
  /// Describes the volume that holds `item`, which must exist.
  virtual Result<VolumeProperties> properties(const Path& item) const = 0;
};

}  // namespace quarn
