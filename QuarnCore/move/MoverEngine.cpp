#include "QuarnCore/move/MoverEngine.h"

#include "QuarnCore/discovery/DriveScanner.h"
#include "QuarnCore/discovery/InfoPlist.h"
#include "QuarnCore/discovery/InstallsDB.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/launchers/NestedAppLauncherService.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/HealthManifest.h"
#include "QuarnCore/move/Homecoming.h"
#include "QuarnCore/move/InstallsDBWriter.h"
#include "QuarnCore/move/ItemMover.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::MoverEngine {
namespace {

constexpr double secondsToQuit = 8.0;

void checkSource(const ReadOnlyPlatform& platform, const Path& source) {
  if (platform.files.exists(source)) return;
  sight(platform.files, source).orThrow();
  throw MoverError::sourceMissing();
}

void checkRunning(Platform& platform, const Path& source, bool quitRunning) {
  if (source.extension() != "app" || !RunningAppsDetector::isRunning(platform, source)) return;
  if (quitRunning && RunningAppsDetector::quit(platform, source, false, secondsToQuit)) return;
  throw MoverError::appIsRunning(source.lastComponent());
}

void checkDestination(const ReadOnlyPlatform& platform, const Path& destination) {
  if (platform.files.exists(destination)) throw MoverError::destinationExists();
}

/// A volume that doesn't report its free space gives 0, which passes.
void checkSpace(const ReadOnlyPlatform& platform, std::int64_t needed, const Path& folder) {
  const std::int64_t available = VolumeCapacityProbe::freeBytes(platform, folder);
  if (available >= 1 && available < needed) throw MoverError::insufficientSpace(needed, available);
}

/// Sets the copy aside and throws. The source hasn't been changed.
[[noreturn]] void giveUp(Platform& platform, const Claim& claim, const MoverError& error) {
  claim.giveBack(platform);
  throw error;
}

/// Makes sure that the drive, and not only the system's memory, holds the copy before the source is removed.
/// This can take minutes, so it comes before the comparison, which then notices changes made meanwhile. A
/// missing copy is reported by the comparison, so here that failure is only returned.
Result<void> flushToDrive(Platform& platform, const Path& destination, const Claim& claim) {
  const auto flushed = platform.files.flush(destination);
  if (!flushed && platform.files.exists(destination))
    giveUp(platform, claim, MoverError::verifyFailed(flushed.error().description));
  return flushed;
}

/// The last check before the removal. Whatever would stop the removal is found while the source is complete,
/// and is returned.
std::optional<PlatformError> verify(Platform& platform, const Path& source, const Path& destination,
                                    const Claim& claim, const ChosenVolume& volume) {
  const auto flushed = flushToDrive(platform, destination, claim);
  auto findings = MoveVerifier::beforeRemoval(platform, source, destination);
  if (findings.difference) giveUp(platform, claim, MoverError::verifyFailed(*findings.difference));
  if (!flushed) giveUp(platform, claim, MoverError::verifyFailed(flushed.error().description));
  if (!volume.holds(platform, destination))
    giveUp(platform, claim, MoverError::copyFailed("the drive was pulled out meanwhile"));
  return std::move(findings.obstacle);
}

void removeSource(Platform& platform, const Path& source, const Claim& claim,
                  const std::optional<PlatformError>& obstacle) {
  if (obstacle) giveUp(platform, claim, MoverError::sourceRemoveFailed(obstacle->description));
  const auto removed = platform.files.remove(source);
  if (!removed) giveUp(platform, claim, MoverError::sourceRemoveFailed(removed.error().description));
}

/// Makes the link. If that fails, the copy is the only data left, so it is moved back and not set aside.
void link(Platform& platform, const Path& source, const Path& destination) {
  const auto linked = platform.files.createSymbolicLink(source, destination.text());
  if (linked) return;
  try {
    ItemMover::move(platform, destination, source);
  } catch (const LocalizedError&) {
    // The link's error is reported instead. The copy stays where it was.
  }
  throw MoverError::symlinkFailed(linked.error().description);
}

void record(Platform& platform, const Path& source, const Path& destination, std::int64_t sizeBytes) {
  const auto info =
      BundleInfoPlistReader::read(platform, destination).value_or(BundleInfoPlistReader::Info{});
  HealthManifest::record(platform, {.sourcePath = platform.files.standardized(source).text(),
                                    .destinationPath = platform.files.standardized(destination).text(),
                                    .bundleIdentifier = info.bundleIdentifier,
                                    .sizeBytes = sizeBytes,
                                    .movedAt = platform.clock.now()});
  InstallsDBWriter::recordMove(platform,
                               {.source = source,
                                .destination = destination,
                                .bundleId = info.bundleIdentifier,
                                .version = info.version,
                                .sizeBytes = sizeBytes,
                                .trackedFiles = {}},
                               InstallsDB::defaultPath(platform.places));
}

/// A link instead of the item means that the copy's path held a link, which has come back in its place.
void verifyInternalized(const ReadOnlyPlatform& platform, const Path& item) {
  if (!platform.files.exists(item)) {
    throw MoverError::verifyFailed(item.lastComponent() + " missing after restore");
  }
  if (platform.files.isSymbolicLink(item)) {
    throw MoverError::verifyFailed(item.lastComponent() +
                                   " is still a symlink after restore — data was not internalized");
  }
}

}  // namespace

void moveAndLink(Platform& platform, const Path& source, const Path& destinationParent, bool quitRunning,
                 const StatusCallback& status, const ProgressCallback& progress) {
  const Turn turn(platform);
  checkSource(platform, source);
  checkRunning(platform, source, quitRunning);
  MountPoints::refuseInside(platform, source);
  const ChosenVolume volume = ChosenVolume::requiredFor(platform, destinationParent);
  platform.files.createFolder(destinationParent).orThrow();
  volume.requireHolds(platform, destinationParent);
  const Path destination = destinationParent.appending(source.lastComponent());
  checkDestination(platform, destination);
  const std::int64_t needed = SizeCalculator::size(platform, source);
  checkSpace(platform, needed, destinationParent);

  const Claim claim = FileCopier::copy(platform, source, destination, needed, progress);
  status({.stage = JobStatus::Stage::verifying, .progress = 0, .message = {}});
  const auto obstacle = verify(platform, source, destination, claim, volume);
  status({.stage = JobStatus::Stage::linking, .progress = 0, .message = {}});
  removeSource(platform, source, claim, obstacle);
  link(platform, source, destination);
  record(platform, source, destination, needed);
  NestedAppLauncherService::installLaunchers(platform, source, destination, InstallerRunReporter::silent());
}

void restore(Platform& platform, const Path& link) {
  const Turn turn(platform);
  Homecoming::bringHome(platform, link);
  verifyInternalized(platform, link);
  HealthManifest::forget(platform, platform.files.standardized(link).text());
  InstallsDBWriter::recordRestore(platform, link, InstallsDB::defaultPath(platform.places));
}

}  // namespace quarn::MoverEngine
