#include "QuarnCore/move/PathMover.h"

#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/move/DiskUsage.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/PathPair.h"

namespace quarn::PathMover {
namespace {

/// In two steps, so that the product can't overflow.
std::int64_t ninetyFivePercent(std::int64_t kilobytes) {
  return kilobytes / 100 * 95 + kilobytes % 100 * 95 / 100;
}

/// Refuses a drive that isn't mounted: the folders made in its place would be on the startup disk.
ChosenVolume mountedVolume(const ReadOnlyPlatform& platform, const Path& destination) {
  if (auto volume = ChosenVolume::holding(platform, destination)) return *volume;
  sight(platform.files, destination).orThrow();
  throw MoveRefused("No drive is mounted there: " + destination.text());
}

/// Refuses whole volumes and protected folders. What replaces a whole volume can't be moved back. And what is
/// merged into the home folder or a folder for applications can't be told apart from what was there before.
void refuseProtectedPlace(const ReadOnlyPlatform& platform, const Path& destination) {
  if (MountPoints::contains(platform, destination))
    throw MoveRefused("Destination is a whole volume: " + destination.text() + ". Name a folder on it.");
  if (ProtectedPlaces(platform).isOneOrAroundOne(sight(platform.files, destination).orThrow()))
    throw MoveRefused("Destination is a folder that belongs where it is: " + destination.text());
}

/// Checks what makes removing the source safe. Checked again right before each step that relies on it,
/// because a plan becomes outdated while the source is measured, the user is asked, or another run has its
/// turn.
void requireSafe(const ReadOnlyPlatform& platform, const Path& source, const Path& destination) {
  PathPair::requireSafe(platform, source, destination);
  MountPoints::refuseInside(platform, source);
  refuseProtectedPlace(platform, destination);
}

void runRsync(Platform& platform, const Plan& plan, bool showsProgress) {
  const auto attributes = platform.files.attributes(plan.source);
  const bool isFolder = attributes && attributes->kind == FileKind::folder;
  if (isFolder) platform.files.createFolder(plan.destination).orThrow();
  std::vector<std::string> arguments = {"-aH"};
  if (showsProgress) arguments.emplace_back("--progress");
  // With trailing slashes rsync(1) copies the contents of one folder into the other, instead of the folder
  // itself.
  for (const Path& path : {plan.source, plan.destination})
    arguments.push_back(path.text() + (isFolder ? "/" : ""));
  const auto child =
      platform.processes.start(Path("/usr/bin/rsync"), arguments, OutputStreams::inherited).orThrow();
  const int status = child->waitForExit();
  if (status != 0) throw MoveRefused("rsync exited " + std::to_string(status));
}

void requireAtLeast(std::int64_t minimumKB, std::int64_t destinationKB) {
  if (destinationKB >= minimumKB) return;
  throw MoveRefused("Verification failed: destination is below 95%; source left untouched.");
}

}  // namespace

Plan plan(const ReadOnlyPlatform& platform, const Path& source, const Path& destination) {
  PathPair::requireSafe(platform, source, destination);
  const ChosenVolume volume = mountedVolume(platform, destination);
  requireSafe(platform, source, destination);
  const std::int64_t sourceKB = DiskUsage::kilobytes(platform, source);
  return {source, destination, volume, sourceKB, ninetyFivePercent(sourceKB)};
}

std::int64_t copy(Platform& platform, const Plan& plan, bool showsProgress) {
  requireSafe(platform, plan.source, plan.destination);
  const Path folder = plan.destination.parent();
  platform.files.createFolder(folder).orThrow();
  plan.volume.requireHolds(platform, folder);
  runRsync(platform, plan, showsProgress);
  // Before the source is removed later, the drive itself must hold the copy.
  platform.files.flush(plan.destination).orThrow();
  return DiskUsage::kilobytes(platform, plan.destination);
}

void replaceByLink(Platform& platform, const Plan& plan, std::int64_t destinationKB) {
  requireAtLeast(plan.minimumKB, destinationKB);
  // Whatever was added to the source while the copy was written out could disappear within the five per cent.
  const auto findings = MoveVerifier::beforeRemoval(platform, plan.source, plan.destination);
  if (findings.difference) throw MoveRefused("Verification failed: " + *findings.difference);
  if (findings.obstacle) throw *findings.obstacle;
  // Once more, directly before the removal: the comparison may have taken minutes.
  plan.volume.requireHolds(platform, plan.destination);
  requireSafe(platform, plan.source, plan.destination);
  platform.files.remove(plan.source).orThrow();
  platform.files.createSymbolicLink(plan.source, plan.destination.text()).orThrow();
}

bool carryOut(Platform& platform, const Plan& planned, bool showsProgress, const Listener& listener) {
  const Turn turn(platform, listener.waiting);
  // Another run may have come and gone while the source was measured and the user was asked.
  if (platform.files.isSymbolicLink(planned.source)) return false;
  const Plan current = turn.hadToWait() ? plan(platform, planned.source, planned.destination) : planned;
  const std::int64_t destinationKB = copy(platform, current, showsProgress);
  listener.copied(destinationKB);
  replaceByLink(platform, current, destinationKB);
  return true;
}

}  // namespace quarn::PathMover
