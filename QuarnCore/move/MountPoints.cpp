#include "QuarnCore/move/MountPoints.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::MountPoints {
namespace {

std::vector<Path> all(const ReadOnlyPlatform& platform) {
  return platform.volumes.mountPoints().valueOr({});
}

std::vector<Path> required(const ReadOnlyPlatform& platform) {
  auto mountPoints = platform.volumes.mountPoints();
  if (!mountPoints) throw MoveRefused("The list of mounted volumes can't be read.");
  return *std::move(mountPoints);
}

/// The links in the parent are resolved, but not the item itself if it is a link.
Path placeOf(const ReadOnlyPlatform& platform, const Path& item) {
  const auto folder = platform.files.realPath(item.parent());
  if (!folder && folder.error().code != CocoaErrorCode::fileReadNoSuchFile)
    throw MoveRefused("It can't be seen whether a volume is mounted inside " + item.lastComponent() + ": " +
                      folder.error().localizedDescription());
  return (folder ? *folder : platform.files.standardized(item.parent())).appending(item.lastComponent());
}

}  // namespace

bool contains(const ReadOnlyPlatform& platform, const Path& place) {
  const auto mountPoints = all(platform);
  const Path resolved = platform.files.resolvingLinks(place);
  return std::any_of(mountPoints.begin(), mountPoints.end(),
                     [&](const Path& mountPoint) { return Text::equal(mountPoint.text(), resolved.text()); });
}

Path holding(const ReadOnlyPlatform& platform, const Path& place) {
  const Path resolved = sight(platform.files, place).leadsTo;
  Path innermost("/");
  for (const Path& mountPoint : all(platform)) {
    if (isAtOrInByText(resolved, mountPoint) && mountPoint.text().size() >= innermost.text().size())
      innermost = mountPoint;
  }
  return innermost;
}

void refuseInside(const ReadOnlyPlatform& platform, const Path& item) {
  const auto mountPoints = required(platform);
  const Path place = placeOf(platform, item);
  if (std::any_of(mountPoints.begin(), mountPoints.end(),
                  [&](const Path& mountPoint) { return Text::equal(mountPoint.text(), place.text()); }))
    throw MoveRefused(item.lastComponent() + " is a volume of its own: " + place.text());
  refuseBelow(platform, item);
}

void refuseBelow(const ReadOnlyPlatform& platform, const Path& item) {
  const Path place = placeOf(platform, item);
  for (const Path& mountPoint : required(platform)) {
    if (isAtOrInByText(mountPoint, place) && !Text::equal(mountPoint.text(), place.text()))
      throw MoveRefused("A volume is mounted inside " + item.lastComponent() + ": " + mountPoint.text() +
                        ". Eject it first.");
  }
}

bool areNoneInside(const ReadOnlyPlatform& platform, const Path& item) {
  try {
    refuseInside(platform, item);
    return true;
  } catch (const MoveRefused&) {
    return false;
  }
}

}  // namespace quarn::MountPoints
