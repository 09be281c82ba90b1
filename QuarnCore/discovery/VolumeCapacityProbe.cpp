#include "QuarnCore/discovery/VolumeCapacityProbe.h"

namespace quarn::VolumeCapacityProbe {

std::int64_t freeBytes(const ReadOnlyPlatform& platform, const Path& item) {
  const auto properties = platform.volumes.properties(item);
  return properties ? properties->availableCapacityForImportantUsage.value_or(0) : 0;
}

}  // namespace quarn::VolumeCapacityProbe
