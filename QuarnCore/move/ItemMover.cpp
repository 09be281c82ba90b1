#include "QuarnCore/move/ItemMover.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MoveRefused.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn::ItemMover {
namespace {

/// Whichever step failed, a person is told that the item couldn't be moved, and with which number.
PlatformError moveError(Platform& platform, const PlatformError& error, const Path& source,
                        const Path& destination) {
  if (error.domain != cocoaErrorDomain) return error;
  return CocoaError::fromCode(CocoaError::Operation::move, error.code, source, destination, [&] {
    const auto volume = platform.volumes.properties(destination.parent());
    return volume ? volume->name.value_or("") : std::string();
  });
}

MoveRefused notCopyable(const std::string& name) {
  return MoveRefused("“" + name + "” is a socket or a device, which can't be copied. Remove it first.");
}

/// Takes back the copy, which is this run's own, and fails.
[[noreturn]] void giveUp(Platform& platform, const PlatformError& error, const Path& source,
                         const Path& destination) {
  platform.files.remove(destination).orIgnore();
  throw moveError(platform, error, source, destination);
}

void compare(Platform& platform, const Path& source, const Path& destination) {
  const auto findings = MoveVerifier::beforeRemoval(platform, source, destination);
  if (findings.difference) {
    platform.files.remove(destination).orIgnore();
    throw MoverError::verifyFailed(*findings.difference);
  }
  if (findings.obstacle) giveUp(platform, *findings.obstacle, source, destination);
}

void moveAcrossVolumes(Platform& platform, const Path& source, const Path& destination) {
  const auto copied = platform.files.copy(source, destination);
  if (!copied) throw moveError(platform, copied.error(), source, destination);
  // The source is the only copy until the other volume really holds the new one.
  const auto flushed = platform.files.flush(destination);
  if (!flushed) giveUp(platform, flushed.error(), source, destination);
  // A link is copied whole or not at all, and what it leads to is not looked at.
  if (!platform.files.isSymbolicLink(source)) compare(platform, source, destination);
  const auto removed = platform.files.remove(source);
  if (!removed) throw moveError(platform, removed.error(), source, destination);
}

bool liesOnTheVolumeOf(Platform& platform, const FileAttributes& item, const Path& folder) {
  const auto found = platform.files.attributes(platform.files.resolvingLinks(folder));
  return found && found->identity.device == item.identity.device;
}

}  // namespace

void move(Platform& platform, const Path& source, const Path& destination) {
  if (!platform.files.rename(source, destination).orThrow()) moveAcrossVolumes(platform, source, destination);
}

void requireMovable(Platform& platform, const Path& item, const Path& folder) {
  MountedInside::refuse(platform, item);
  const auto attributes = platform.files.attributes(item).orThrow();
  // A rename takes everything below along as it is.
  const auto obstacles = liesOnTheVolumeOf(platform, attributes, folder)
                             ? Obstacles{.toCopying = {}, .toRemoval = platform.files.obstacleToRemoval(item)}
                             : Obstacles::find(platform, item);
  if (obstacles.toCopying) throw notCopyable(*obstacles.toCopying);
  if (obstacles.toRemoval)
    throw moveError(platform, *obstacles.toRemoval, item, folder.appending(item.lastComponent()));
}

}  // namespace quarn::ItemMover
