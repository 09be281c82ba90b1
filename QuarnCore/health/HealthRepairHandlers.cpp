#include "QuarnCore/health/HealthRepairHandlers.h"

#include <algorithm>

#include "QuarnCore/discovery/InstallsDB.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/health/DataLinkDetection.h"
#include "QuarnCore/launchers/LauncherShimCleaner.h"
#include "QuarnCore/launchers/NestedAppLauncherService.h"
#include "QuarnCore/move/InstallsDBWriter.h"
#include "QuarnCore/move/MoverEngine.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn {
namespace {

std::string nameOf(const HealthIssue& issue) {
  return issue.location.lastComponent();
}

/// Where a reverted application goes. One that has no copy goes to the drive that this tool was first made
/// for.
Path destinationFolder(const HealthIssue& issue) {
  if (issue.target) return issue.target->parent();
  return AppStorageNames::appsRoot(Path("/Volumes/Crucial X9"));
}

std::optional<Path> relocatedTarget(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  if (!issue.target) return std::nullopt;
  return StaleRootRetarget::candidate(platform, *issue.target);
}

void trashShims(HealthRepairRun& run, const Path& target) {
  for (const Path& shim : LauncherShimCleaner::cleanupShims(run.platform, target))
    run.say("  trashed stale launcher shim " + shim.text());
}

/// A record names a path in the folder for moved items of some drive, or it wasn't written by a move.
bool isInFolderForMovedItems(const Path& item) {
  const auto isFolderForMovedItems = [](const Path& folder) {
    const std::string name = folder.lastComponent();
    const auto& former = AppStorageNames::legacyExternalRoots;
    return name == AppStorageNames::externalRoot ||
           std::find(former.begin(), former.end(), name) != former.end();
  };
  const Path place = item.simplified();
  for (Path folder = place.parent().parent(); folder.parent() != folder; folder = folder.parent()) {
    if (isFolderForMovedItems(folder)) return true;
  }
  return false;
}

/// What a report says of a reverted application may come from a record that anybody wrote.
void requirePlausible(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  const ProtectedPlaces places(platform);
  const Sighting location = sight(platform.files, issue.location);
  if (places.isOneOrAroundOne(location) || places.isInOwnFolder(location))
    throw MoveRefused("“" + nameOf(issue) + "” belongs where it is.");
  if (issue.target && !isInFolderForMovedItems(*issue.target))
    throw MoveRefused("“" + issue.target->text() + "” isn’t in a folder for moved items.");
}

}  // namespace

HealthRepairRun::HealthRepairRun(Platform& whole, const HealthReport& report,
                                 std::function<void(const std::string& line)> whoIsTold)
    : platform(whole), say(whoIsTold), trash(whole, report, whoIsTold) {
  for (const HealthIssue& issue : report.issues) {
    if (issue.kind != HealthIssue::Kind::reverted) continue;
    const Path folder = destinationFolder(issue);
    destinations.emplace(folder.text(), JobRunner::begin(platform, folder, false));
  }
}

namespace HealthRepairDanglingHandler {
std::string action(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  const auto candidate = relocatedTarget(platform, issue);
  return candidate ? "repoint to " + candidate->text() : "remove dead symlink";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  const auto candidate = relocatedTarget(run.platform, issue);
  FileSystem& files = run.platform.files;
  (void)files.removeSymbolicLink(issue.location);
  if (!candidate) {
    run.say("  removed " + issue.location.text());
    return;
  }
  (void)files.createSymbolicLink(issue.location, candidate->text());
  run.say("  repointed " + issue.location.text() + " -> " + candidate->text());
}
}  // namespace HealthRepairDanglingHandler

namespace HealthRepairEmptyHandler {
std::string action(const ReadOnlyPlatform&, const HealthIssue&) {
  return "trash dead symlink + broken SSD remnant (you must reinstall)";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  (void)run.platform.files.removeSymbolicLink(issue.location);
  if (issue.target) run.trash.trash(*issue.target);
  run.say("  trashed symlink + remnant for " + nameOf(issue));
}
}  // namespace HealthRepairEmptyHandler

namespace HealthRepairRevertHandler {
std::string reclaimAction(const ReadOnlyPlatform&, const HealthIssue& issue) {
  return "trash stale SSD copy, leave internal alone (reclaim " + SizeCalculator::format(issue.sizeBytes) +
         ")";
}

void handleReclaim(HealthRepairRun& run, const HealthIssue& issue) {
  if (issue.target) {
    try {
      requirePlausible(run.platform, issue);
      run.trash.trash(*issue.target);
      trashShims(run, *issue.target);
    } catch (const LocalizedError& error) {
      run.say("  WARN: could not trash " + issue.target->text() + ": " + error.what());
    }
  }
  run.say("  reclaimed " + nameOf(issue));
}

std::string reSymlinkAction(const ReadOnlyPlatform&, const HealthIssue&) {
  return "re-symlink to SSD (will be reverted again next update)";
}

void handleReSymlink(HealthRepairRun& run, const HealthIssue& issue) {
  try {
    requirePlausible(run.platform, issue);
    if (issue.target) run.trash.trash(*issue.target);
    const Path folder = destinationFolder(issue);
    MoveJob job;
    job.source = issue.location;
    job.destination = folder.appending(nameOf(issue));
    const JobRunner::Listener nobody{.waiting = [] {}, .status = [](const JobStatus&) {}, .progress = {}};
    JobRunner::carryOut(run.platform, run.destinations.at(folder.text()), job, nobody);
    run.say("  re-symlinked " + nameOf(issue));
  } catch (const LocalizedError& error) {
    run.say("  FAIL: " + std::string(error.what()));
  }
}
}  // namespace HealthRepairRevertHandler

namespace HealthRepairOrphanHandler {
std::string action(const ReadOnlyPlatform&, const HealthIssue& issue) {
  return "trash from SSD to reclaim " + SizeCalculator::format(issue.sizeBytes);
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  run.trash.trash(issue.location);
  trashShims(run, issue.location);
  run.say("  trashed orphan " + issue.location.text());
}
}  // namespace HealthRepairOrphanHandler

namespace HealthRepairMissingTrackedFilesHandler {
std::string action(const ReadOnlyPlatform&, const HealthIssue&) {
  return "forget stale setup-ledger tracked-file rows";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  const auto entry = issue.target
                         ? InstallsDBEntryResolver::resolve(run.platform, issue.location, *issue.target)
                         : std::nullopt;
  if (!entry) {
    run.say("  no setup-ledger entry found for " + nameOf(issue));
    return;
  }
  const int count = InstallsDBWriter::forgetMissingTrackedFiles(run.platform, entry->installId,
                                                                InstallsDB::defaultPath(run.platform.places));
  run.say("  forgot " + std::to_string(count) + " stale tracked file entr" + (count == 1 ? "y" : "ies") +
          " for " + entry->appName);
}
}  // namespace HealthRepairMissingTrackedFilesHandler

namespace HealthRepairSpotlightLaunchersHandler {
std::string action(const ReadOnlyPlatform&, const HealthIssue&) {
  return "create top-level app launchers for Spotlight";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  const int count = NestedAppLauncherService::installMissingLaunchers(
      run.platform, issue.location, Path("/Applications"), InstallerRunReporter::silent());
  run.say("  installed/repaired " + std::to_string(count) + " Spotlight launcher" + (count == 1 ? "" : "s"));
}
}  // namespace HealthRepairSpotlightLaunchersHandler

namespace HealthRepairUnsafePrefsHandler {
std::string action(const ReadOnlyPlatform&, const HealthIssue&) {
  return "restore plist to internal disk (cfprefsd-safe)";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  const std::string& path = issue.location.text();
  try {
    MoverEngine::restore(run.platform, issue.location);
    run.say("  restored " + path);
  } catch (const LocalizedError& error) {
    run.say("  FAILED: " + std::string(error.what()));
    if (!path.starts_with("/Library/")) return;
    run.say("  Hint: /Library is root-owned. Run via gantrix wrapper:");
    run.say("    ~/.claude/skills/gantrix/gantrix \"$(which quarn)\" \\");
    run.say("        move restore \"" + path + "\"");
  }
}
}  // namespace HealthRepairUnsafePrefsHandler

}  // namespace quarn
