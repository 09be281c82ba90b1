#include "QuarnCore/move/ChosenVolume.h"

#include <algorithm>

#include "QuarnCore/move/MoveRefused.h"

namespace quarn {
namespace {

const Path volumesFolder("/Volumes");

Path nearestExisting(Platform& platform, Path item) {
  while (!platform.files.exists(item) && item.parent() != item) item = item.parent();
  return item;
}

/// Links on the way resolved, as far as the way exists.
Path whereItWillBe(Platform& platform, const Path& folder) {
  const Path existing = nearestExisting(platform, folder);
  const std::string rest = folder.text().substr(std::min(existing.text().size(), folder.text().size()));
  return platform.files.resolvingLinks(existing).appending(rest);
}

/// "/Volumes/<name>" if the path lies there or is it.
std::optional<Path> driveOf(const Path& path) {
  for (Path current = path; current.parent() != current; current = current.parent()) {
    if (current.parent() == volumesFolder) return current;
  }
  return std::nullopt;
}

bool isMountPoint(Platform& platform, const Path& place) {
  const auto mountPoints = platform.volumes.mountPoints().valueOr({});
  return std::find(mountPoints.begin(), mountPoints.end(), place) != mountPoints.end();
}

std::optional<std::int32_t> deviceOf(Platform& platform, const Path& item) {
  const auto attributes = platform.files.attributes(item);
  if (!attributes) return std::nullopt;
  return attributes->identity.device;
}

MoveRefused notMounted(const Path& drive) {
  return MoveRefused("The drive is no longer mounted: " + drive.text());
}

}  // namespace

std::optional<ChosenVolume> ChosenVolume::holding(Platform& platform, const Path& folder) {
  const Path place = whereItWillBe(platform, folder);
  const auto drive = driveOf(place);
  if (drive && !isMountPoint(platform, *drive)) return std::nullopt;
  const auto device = deviceOf(platform, nearestExisting(platform, place));
  if (!device) return std::nullopt;
  return ChosenVolume(drive, *device);
}

ChosenVolume ChosenVolume::requiredFor(Platform& platform, const Path& folder) {
  if (auto volume = holding(platform, folder)) return *volume;
  throw notMounted(driveOf(whereItWillBe(platform, folder)).value_or(folder));
}

bool ChosenVolume::holds(Platform& platform, const Path& item) const {
  return (!drive_ || isMountPoint(platform, *drive_)) && deviceOf(platform, item) == device_;
}

void ChosenVolume::requireHolds(Platform& platform, const Path& item) const {
  if (!holds(platform, item)) throw notMounted(drive_.value_or(item));
}

namespace MountedInside {

std::optional<Path> find(Platform& platform, const Path& item) {
  const Path place = platform.files.resolvingLinks(item.parent()).appending(item.lastComponent());
  for (const Path& mountPoint : platform.volumes.mountPoints().valueOr({})) {
    if (mountPoint == place || mountPoint.text().starts_with(place.text() + "/")) return mountPoint;
  }
  return std::nullopt;
}

void refuse(Platform& platform, const Path& item) {
  const auto mountPoint = find(platform, item);
  if (!mountPoint) return;
  throw MoveRefused("A volume is mounted inside " + item.lastComponent() + ": " + mountPoint->text() +
                    ". Eject it first.");
}

}  // namespace MountedInside
}  // namespace quarn
