#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// What a volume says of itself; each answer may be absent. Capacities are bytes.
struct VolumeProperties {
  std::optional<std::string> name;
  std::optional<std::int64_t> totalCapacity;
  /// Counts what the system would purge to make room.
  std::optional<std::int64_t> availableCapacityForImportantUsage;
  std::optional<bool> isBrowsable;
  std::optional<bool> isInternal;
  std::optional<bool> isReadOnly;
  std::optional<std::string> localizedFormatDescription;
  bool operator==(const VolumeProperties&) const = default;
};

class Volumes {
 public:
  virtual ~Volumes() = default;
  /// Mount points in the system's order, hidden volumes left out.
  virtual Result<std::vector<Path>> mounted() const = 0;
  /// Every place at which something is mounted, hidden volumes and what isn't a drive included.
  virtual Result<std::vector<Path>> mountPoints() const = 0;
  /// Of the volume that holds `item`, which must exist.
  virtual Result<VolumeProperties> properties(const Path& item) const = 0;
};

}  // namespace quarn
