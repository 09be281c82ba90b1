#include "QuarnCore/move/ItemMover.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn::ItemMover {
namespace {

/// Returns an error that says the item couldn't be moved, with the code of the step that failed. `place` lies
/// on the volume that refused.
PlatformError moveError(const ReadOnlyPlatform& platform, const PlatformError& error, const Path& source,
                        const Path& destination, const Path& place) {
  if (error.domain != cocoaErrorDomain) return error;
  return CocoaError::fromCode(CocoaError::Operation::move, error.code, source, destination, [&] {
    const auto volume = platform.volumes.properties(place);
    return volume ? volume->name.value_or("") : std::string();
  });
}

PlatformError couldNotArrive(const ReadOnlyPlatform& platform, const PlatformError& error, const Path& source,
                             const Path& destination) {
  return moveError(platform, error, source, destination, destination.parent());
}

PlatformError couldNotLeave(const ReadOnlyPlatform& platform, const PlatformError& error, const Path& source,
                            const Path& destination) {
  // A missing permission then concerns the folder of the source.
  const bool isRefused = error.code == CocoaErrorCode::fileWriteNoPermission;
  return moveError(platform, error, source, isRefused ? source : destination, source.parent());
}

void compare(Platform& platform, const Path& source, const Path& destination) {
  const auto findings = MoveVerifier::beforeRemoval(platform, source, destination);
  if (!findings.difference && !findings.obstacle) return;
  platform.files.remove(destination).orIgnore();
  if (findings.difference) throw MoverError::verifyFailed(*findings.difference);
  throw couldNotLeave(platform, *findings.obstacle, source, destination);
}

void moveAcrossVolumes(Platform& platform, const Path& source, const Path& destination) {
  const auto copied = platform.files.copy(source, destination);
  if (!copied) throw couldNotArrive(platform, copied.error(), source, destination);
  // Until the other volume has really stored the copy, the source is the only one.
  const auto flushed = platform.files.flush(destination);
  if (!flushed) {
    platform.files.remove(destination).orIgnore();
    throw couldNotArrive(platform, flushed.error(), source, destination);
  }
  // A link is copied completely or not at all, and the comparison would follow it.
  if (!platform.files.isSymbolicLink(source)) compare(platform, source, destination);
  const auto removed = platform.files.remove(source);
  if (!removed) throw couldNotLeave(platform, removed.error(), source, destination);
}

/// Returns whether a rename will do. The device number alone isn't enough: a device can be mounted twice, and
/// rename(2) doesn't work from one mount to the other (EXDEV).
bool isOnOneVolume(const ReadOnlyPlatform& platform, const Path& item, const Path& folder) {
  const auto one = platform.files.attributes(item);
  const auto other = platform.files.attributes(platform.files.resolvingLinks(folder));
  return one && other && one->identity.device == other->identity.device &&
         MountPoints::holding(platform, item) == MountPoints::holding(platform, folder);
}

}  // namespace

void move(Platform& platform, const Path& source, const Path& destination) {
  // Not decided beforehand: only the rename itself knows whether the destination is on another volume.
  if (!platform.files.rename(source, destination).orThrow()) moveAcrossVolumes(platform, source, destination);
}

void requireMovable(const ReadOnlyPlatform& platform, const Path& item, const Path& folder) {
  MountPoints::refuseInside(platform, item);
  // A rename moves everything below the item without looking at it.
  const auto obstacles = isOnOneVolume(platform, item, folder)
                             ? Obstacles{.toCopying = {}, .toRemoval = platform.files.obstacleToRemoval(item)}
                             : Obstacles::find(platform, item);
  if (obstacles.toCopying) throw MoveRefused::notCopyable(*obstacles.toCopying);
  if (obstacles.toRemoval)
    throw couldNotLeave(platform, *obstacles.toRemoval, item, folder.appending(item.lastComponent()));
}

}  // namespace quarn::ItemMover
