#include "QuarnCore/move/ChosenVolume.h"

#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn {
namespace {

const Path volumesFolder("/Volumes");

/// Returns "/Volumes/<name>" if the path is that or lies below it.
std::optional<Path> driveOf(const Path& path) {
  for (Path current = path; current.parent() != current; current = current.parent()) {
    if (current.parent() == volumesFolder) return current;
  }
  return std::nullopt;
}

std::optional<std::int32_t> deviceOf(const ReadOnlyPlatform& platform, const Path& item) {
  const auto place = platform.files.realPath(item);
  if (!place) return std::nullopt;
  const auto attributes = platform.files.attributes(*place);
  if (!attributes) return std::nullopt;
  return attributes->identity.device;
}

/// Returns the device number of the folder, or of the nearest folder around it that exists.
std::optional<std::int32_t> deviceAround(const ReadOnlyPlatform& platform, Path folder) {
  while (!platform.files.exists(folder) && folder.parent() != folder) folder = folder.parent();
  return deviceOf(platform, folder);
}

/// Whether anything is mounted there, or a folder exists, can't be told of what can't be looked at.
void requireLook(const ReadOnlyPlatform& platform, const Path& folder) {
  if (const auto failure = sight(platform.files, folder).failure)
    throw MoveRefused(failure->localizedDescription());
}

MoveRefused notMounted(const Path& drive) {
  return MoveRefused("The drive is no longer mounted: " + drive.text());
}

}  // namespace

std::optional<ChosenVolume> ChosenVolume::holding(const ReadOnlyPlatform& platform, const Path& folder) {
  const Sighting seen = sight(platform.files, folder);
  if (seen.failure) return std::nullopt;
  const Path& place = seen.leadsTo;
  const auto drive = driveOf(place);
  if (drive && !MountPoints::contains(platform, *drive)) return std::nullopt;
  const auto device = deviceAround(platform, place);
  if (!device) return std::nullopt;
  return ChosenVolume(drive, *device);
}

ChosenVolume ChosenVolume::ofDrive(const ReadOnlyPlatform& platform, const Path& drive) {
  const auto volume = holding(platform, drive);
  const bool isOfMountPoints = sight(platform.files, drive).leadsTo == volumesFolder;
  if (volume && !isOfMountPoints && platform.files.isFolder(drive)) return *volume;
  requireLook(platform, drive);
  throw MoveRefused("No drive is mounted there: " + drive.text());
}

ChosenVolume ChosenVolume::requiredFor(const ReadOnlyPlatform& platform, const Path& folder) {
  if (auto volume = holding(platform, folder)) return *volume;
  requireLook(platform, folder);
  throw notMounted(driveOf(sight(platform.files, folder).leadsTo).value_or(folder));
}

bool ChosenVolume::holds(const ReadOnlyPlatform& platform, const Path& item) const {
  return (!drive_ || MountPoints::contains(platform, *drive_)) && deviceOf(platform, item) == device_;
}

void ChosenVolume::requireHolds(const ReadOnlyPlatform& platform, const Path& item) const {
  if (!holds(platform, item)) throw notMounted(drive_.value_or(item));
}

}  // namespace quarn
