#include "QuarnCore/move/ItemMover.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn::ItemMover {
namespace {

/// Whichever step failed, a person is told that the item couldn't be moved, and with which number. `place`
/// lies on the volume that refused.
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
  // It is the source's folder that may not be changed then.
  const bool isRefused = error.code == CocoaErrorCode::fileWriteNoPermission;
  return moveError(platform, error, source, isRefused ? source : destination, source.parent());
}

MoveRefused notCopyable(const std::string& name) {
  return MoveRefused("“" + name + "” is a socket or a device, which can't be copied. Remove it first.");
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
  // The source is the only copy until the other volume really holds the new one.
  const auto flushed = platform.files.flush(destination);
  if (!flushed) {
    platform.files.remove(destination).orIgnore();
    throw couldNotArrive(platform, flushed.error(), source, destination);
  }
  // A link is copied whole or not at all, and what it leads to is not looked at.
  if (!platform.files.isSymbolicLink(source)) compare(platform, source, destination);
  const auto removed = platform.files.remove(source);
  if (!removed) throw couldNotLeave(platform, removed.error(), source, destination);
}

/// A rename does then; one device can be mounted twice, and no rename goes from one mount to the other.
bool isOnOneVolume(const ReadOnlyPlatform& platform, const Path& item, const Path& folder) {
  const auto one = platform.files.attributes(item);
  const auto other = platform.files.attributes(platform.files.resolvingLinks(folder));
  return one && other && one->identity.device == other->identity.device &&
         MountPoints::holding(platform, item) == MountPoints::holding(platform, folder);
}

}  // namespace

void move(Platform& platform, const Path& source, const Path& destination) {
  if (!platform.files.rename(source, destination).orThrow()) moveAcrossVolumes(platform, source, destination);
}

void requireMovable(const ReadOnlyPlatform& platform, const Path& item, const Path& folder) {
  MountPoints::refuseInside(platform, item);
  // A rename takes everything below along as it is.
  const auto obstacles = isOnOneVolume(platform, item, folder)
                             ? Obstacles{.toCopying = {}, .toRemoval = platform.files.obstacleToRemoval(item)}
                             : Obstacles::find(platform, item);
  if (obstacles.toCopying) throw notCopyable(*obstacles.toCopying);
  if (obstacles.toRemoval)
    throw couldNotLeave(platform, *obstacles.toRemoval, item, folder.appending(item.lastComponent()));
}

}  // namespace quarn::ItemMover
