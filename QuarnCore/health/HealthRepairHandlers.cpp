#include "QuarnCore/health/HealthRepairHandlers.h"

#include "QuarnCore/discovery/InstallsDB.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/health/DataLinkDetection.h"
#include "QuarnCore/health/HealthRepairGuard.h"
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

/// What stays keeps the launchers that open it.
void trashWithShims(HealthRepairRun& run, const Path& bundle) {
  if (!run.trash.trash(bundle)) return;
  for (const Path& shim : LauncherShimCleaner::cleanupShims(run.platform, bundle))
    run.say("  trashed stale launcher shim " + shim.text());
}

/// Returns whether one more look finds the same, and says otherwise why everything stays.
bool isStillSo(const HealthRepairRun& run, const HealthIssue& issue,
               void (*look)(const ReadOnlyPlatform&, const HealthIssue&)) {
  try {
    look(run.platform, issue);
    return true;
  } catch (const LocalizedError& error) {
    run.say("  left as it is: " + error.localizedDescription());
    return false;
  }
}

}  // namespace

namespace HealthRepairDanglingHandler {
std::optional<Path> candidate(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  return issue.target ? StaleRootRetarget::candidate(platform, *issue.target) : std::nullopt;
}

std::string action(const std::optional<Path>& candidate) {
  return candidate ? "repoint to " + candidate->text() : "remove dead symlink";
}

void handle(HealthRepairRun& run, const HealthIssue& issue, const std::optional<Path>& candidate) {
  FileSystem& files = run.platform.files;
  if (candidate && !files.exists(*candidate)) {
    run.say("  left as it is: " + candidate->text() + " is no longer there");
    return;
  }
  if (!isStillSo(run, issue, HealthRepairGuard::requireBroken)) return;
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
std::string action(const HealthIssue&) {
  return "trash dead symlink + broken SSD remnant (you must reinstall)";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  if (!isStillSo(run, issue, HealthRepairGuard::requireBroken)) return;
  (void)run.platform.files.removeSymbolicLink(issue.location);
  if (issue.target) run.trash.trash(*issue.target);
  run.say("  trashed symlink + remnant for " + nameOf(issue));
}
}  // namespace HealthRepairEmptyHandler

namespace HealthRepairRevertHandler {
std::string reclaimAction(const HealthIssue& issue) {
  return "trash stale SSD copy, leave internal alone (reclaim " + SizeCalculator::format(issue.sizeBytes) +
         ")";
}

void handleReclaim(HealthRepairRun& run, const HealthIssue& issue) {
  if (issue.target) {
    try {
      HealthRepairGuard::requirePlausible(run.platform, run.report, issue);
      if (!isStillSo(run, issue, HealthRepairGuard::requireStillReverted)) return;
      trashWithShims(run, *issue.target);
    } catch (const LocalizedError& error) {
      run.say("  WARN: could not trash " + issue.target->text() + ": " + error.localizedDescription());
    }
  }
  run.say("  reclaimed " + nameOf(issue));
}

std::string reSymlinkAction(const HealthIssue&) {
  return "re-symlink to SSD (will be reverted again next update)";
}

void handleReSymlink(HealthRepairRun& run, const HealthIssue& issue) {
  try {
    HealthRepairGuard::requirePlausible(run.platform, run.report, issue);
    HealthRepairGuard::requireStillReverted(run.platform, issue);
    HealthRepairGuard::requireMovable(run.platform, issue.location);
    if (issue.target) run.trash.trash(*issue.target);
    MoveJob job;
    job.source = issue.location;
    job.destination = HealthRepairRun::destinationOf(issue);
    const JobRunner::Listener nobody{.waiting = [] {}, .status = [](const JobStatus&) {}, .progress = {}};
    JobRunner::carryOut(run.platform, run.destinations.at(job.destination.text()), job, nobody);
    run.say("  re-symlinked " + nameOf(issue));
  } catch (const LocalizedError& error) {
    run.say("  FAIL: " + error.localizedDescription());
  }
}
}  // namespace HealthRepairRevertHandler

namespace HealthRepairOrphanHandler {
std::string action(const HealthIssue& issue) {
  return "trash from SSD to reclaim " + SizeCalculator::format(issue.sizeBytes);
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  if (!isStillSo(run, issue, HealthRepairGuard::requireStillOrphan)) return;
  trashWithShims(run, issue.location);
  run.say("  trashed orphan " + issue.location.text());
}
}  // namespace HealthRepairOrphanHandler

namespace HealthRepairMissingTrackedFilesHandler {
std::string action(const HealthIssue&) {
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
std::string action(const HealthIssue&) {
  return "create top-level app launchers for Spotlight";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  const int count = NestedAppLauncherService::installMissingLaunchers(
      run.platform, issue.location, Path("/Applications"), InstallerRunReporter::silent());
  run.say("  installed/repaired " + std::to_string(count) + " Spotlight launcher" + (count == 1 ? "" : "s"));
}
}  // namespace HealthRepairSpotlightLaunchersHandler

namespace HealthRepairUnsafePrefsHandler {
std::string action(const HealthIssue&) {
  return "restore plist to internal disk (cfprefsd-safe)";
}

void handle(HealthRepairRun& run, const HealthIssue& issue) {
  const std::string& path = issue.location.text();
  try {
    HealthRepairGuard::requirePreferencesFile(run.platform, issue.location);
    MoverEngine::restore(run.platform, issue.location);
    run.say("  restored " + path);
  } catch (const LocalizedError& error) {
    run.say("  FAILED: " + error.localizedDescription());
    if (!path.starts_with("/Library/")) return;
    run.say("  Hint: /Library is root-owned. Run via gantrix wrapper:");
    run.say("    ~/.claude/skills/gantrix/gantrix \"$(which quarn)\" \\");
    run.say("        move restore \"" + path + "\"");
  }
}
}  // namespace HealthRepairUnsafePrefsHandler

}  // namespace quarn
