#include "QuarnCore/move/MoverEngine.h"

#include "Platform/PathText.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/discovery/BundleInfoPlistReader.h"
#include "QuarnCore/discovery/InstallsDB.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "QuarnCore/discovery/VolumeCapacityProbe.h"
#include "QuarnCore/foundation/MoverStasher.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/HealthManifest.h"
#include "QuarnCore/move/InstallsDBWriter.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::MoverEngine {
namespace {

constexpr double secondsToQuit = 8.0;

void checkSource(Platform& platform, const Path& source) {
  if (!platform.files.exists(source)) throw MoverError::sourceMissing();
}

void checkRunning(Platform& platform, const Path& source, bool quitRunning) {
  if (source.extension() != "app" || !RunningAppsDetector::isRunning(platform, source)) return;
  if (quitRunning && RunningAppsDetector::quit(platform, source, false, secondsToQuit)) return;
  throw MoverError::appIsRunning(source.lastComponent());
}

void checkDestination(Platform& platform, const Path& destination) {
  if (platform.files.exists(destination)) throw MoverError::destinationExists();
}

/// A free space of 0 means that the volume doesn't tell, and passes.
void checkSpace(Platform& platform, std::int64_t needed, const Path& folder) {
  const std::int64_t available = VolumeCapacityProbe::freeBytes(platform, folder);
  if (available >= 1 && available < needed) throw MoverError::insufficientSpace(needed, available);
}

void verify(Platform& platform, const Path& source, const Path& destination) {
  if (const auto reason = MoveVerifier::failureReason(platform, source, destination)) {
    MoverStasher::stash(platform, destination);
    throw MoverError::verifyFailed(*reason);
  }
}

/// The check read what the system remembers of the copy; the drive must hold it before the source goes.
void flushToDrive(Platform& platform, const Path& destination) {
  const auto flushed = platform.files.flush(destination);
  if (flushed) return;
  MoverStasher::stash(platform, destination);
  throw MoverError::verifyFailed(flushed.error().description);
}

void removeSource(Platform& platform, const Path& source, const Path& destination) {
  const auto removed = platform.files.remove(source);
  if (removed) return;
  MoverStasher::stash(platform, destination);
  throw MoverError::sourceRemoveFailed(removed.error().description);
}

/// Without the link the copy is the only data left, so it goes home and not into the stash.
void link(Platform& platform, const Path& source, const Path& destination) {
  const auto linked = platform.files.createLink(source, destination.text());
  if (linked) return;
  platform.files.move(destination, source).orIgnore();
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

void verifyInternalized(Platform& platform, const Path& item) {
  if (!platform.files.exists(item)) {
    throw MoverError::verifyFailed(item.lastComponent() + " missing after restore");
  }
  if (platform.files.isSymbolicLink(item)) {
    throw MoverError::verifyFailed(item.lastComponent() +
                                   " is still a symlink after restore — data was not internalized");
  }
}

std::string asFolder(const Path& path) {
  return path.text() == "/" ? "/" : path.text() + "/";
}

/// One lies inside the other, or is it, when links are resolved on the way to them.
bool overlap(Platform& platform, const Path& item, const Path& target) {
  const Path folder = platform.files.resolvingLinks(item.parent());
  const std::string at = asFolder(folder.appending(item.lastComponent()));
  const std::string leadsTo = asFolder(platform.files.resolvingLinks(target));
  return at.starts_with(leadsTo) || leadsTo.starts_with(at);
}

bool isMountPoint(Platform& platform, const Path& target) {
  const Path resolved = platform.files.resolvingLinks(target);
  for (const Path& volume : platform.volumes.mounted().valueOr({})) {
    if (platform.files.resolvingLinks(volume) == resolved) return true;
  }
  return false;
}

/// What can't be moved to where the link stands. Found out only afterwards, the link would be gone.
bool canComeHome(Platform& platform, const Path& link, const Path& target) {
  return !overlap(platform, link, target) && !isMountPoint(platform, target);
}

/// What a link leads to; it must be there, or the way back would end with nothing at all.
Path linkTarget(Platform& platform, const Path& link) {
  const std::string text = platform.files.readLink(link).orThrow();
  const Path target = PathText::fileURL(platform.places, text);
  if (!platform.files.exists(target)) throw MoverError::sourceMissing();
  if (canComeHome(platform, link, target)) return target;
  throw MoverError::verifyFailed(link.lastComponent() + " leads to a volume or to a folder around itself");
}

/// A launcher that leads into itself, or to a folder around itself, is none: removing it would remove
/// what it leads to, or leave it nowhere to go.
std::optional<Path> launcherTarget(Platform& platform, const Path& launcher) {
  const auto target = AppScanner::launcherShimTarget(platform, launcher);
  return target && canComeHome(platform, launcher, *target) ? target : std::nullopt;
}

}  // namespace

void moveAndLink(Platform& platform, const Path& source, const Path& destinationParent, bool quitRunning,
                 const StatusCallback& status, const ProgressCallback& progress) {
  checkSource(platform, source);
  checkRunning(platform, source, quitRunning);
  platform.files.createFolder(destinationParent).orThrow();
  const Path destination = destinationParent.appending(source.lastComponent());
  checkDestination(platform, destination);
  const std::int64_t needed = SizeCalculator::size(platform, source);
  checkSpace(platform, needed, destinationParent);
  // Measuring took its time, and another run may have begun the same move.
  checkDestination(platform, destination);

  FileCopier::copy(platform, source, destination, needed, progress);
  status({.stage = JobStatus::Stage::verifying, .progress = 0, .message = {}});
  verify(platform, source, destination);
  flushToDrive(platform, destination);
  status({.stage = JobStatus::Stage::linking, .progress = 0, .message = {}});
  removeSource(platform, source, destination);
  link(platform, source, destination);
  record(platform, source, destination, needed);
}

void restore(Platform& platform, const Path& link) {
  const auto ofLauncher = launcherTarget(platform, link);
  const Path target = ofLauncher ? *ofLauncher : linkTarget(platform, link);
  platform.files.remove(link).orThrow();
  platform.files.move(target, link).orThrow();
  verifyInternalized(platform, link);
  HealthManifest::forget(platform, platform.files.standardized(link).text());
  InstallsDBWriter::recordRestore(platform, link, InstallsDB::defaultPath(platform.places));
}

}  // namespace quarn::MoverEngine
