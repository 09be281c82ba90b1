#include "QuarnCore/discovery/DriveScanner.h"

#include <algorithm>

#include "Platform/Text.h"

namespace quarn {

namespace VolumeCapacityProbe {
std::int64_t freeBytes(const ReadOnlyPlatform& platform, const Path& item) {
  const auto properties = platform.volumes.properties(item);
  return properties ? properties->availableCapacityForImportantUsage.value_or(0) : 0;
}
}  // namespace VolumeCapacityProbe

namespace DriveScanner {
namespace {

DriveInfo driveInfo(const Path& mountPath, const VolumeProperties& properties) {
  return {.id = mountPath.text(),
          .name = properties.name.value_or(mountPath.lastComponent()),
          .mountPath = mountPath,
          .totalBytes = properties.totalCapacity.value_or(0),
          .freeBytes = properties.availableCapacityForImportantUsage.value_or(0),
          .isInternal = properties.isInternal.value_or(false),
          .isWritable = !properties.isReadOnly.value_or(false),
          .filesystem = properties.localizedFormatDescription};
}

bool comesBefore(const DriveInfo& a, const DriveInfo& b) {
  if (a.isInternal != b.isInternal) return a.isInternal;
  return Text::precedes(a.name, b.name);
}

}  // namespace

std::vector<DriveInfo> scan(const ReadOnlyPlatform& platform) {
  std::vector<DriveInfo> drives;
  for (const Path& mountPath : platform.volumes.mounted().valueOr({})) {
    const auto properties = platform.volumes.properties(mountPath);
    if (!properties || !properties->isBrowsable.value_or(false)) continue;
    drives.push_back(driveInfo(mountPath, *properties));
  }
  std::stable_sort(drives.begin(), drives.end(), comesBefore);
  return drives;
}
}  // namespace DriveScanner

}  // namespace quarn
