#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/health/HealthCommands.h"
#include "QuarnCLI/health/HealthFlags.h"
#include "QuarnCLI/health/HealthRenderers.h"
#include "QuarnCLI/health/HealthRepairPrompt.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/health/HealthCheck.h"
#include "QuarnCore/move/APFSSnapshotService.h"

namespace quarn::HealthCommands {
namespace {

using namespace HealthFlags;

HealthRepairArgs argsOf(const CLIArgs& args) {
  return {.dryRun = args.contains(dryRun),
          .yes = args.contains(yes),
          .reSymlinkReverted = args.contains(reSymlinkReverted),
          .reclaimReverted = args.contains(reclaimReverted),
          .noSnapshot = args.contains(noSnapshot),
          .removeOrphans = args.contains(removeOrphans),
          .removeEmpty = args.contains(removeEmpty),
          .removeDangling = args.contains(removeDangling),
          .forgetMissingTrackedFiles = args.contains(forgetMissingTrackedFiles),
          .repairSpotlightLaunchers = args.contains(repairSpotlightLaunchers),
          .restoreUnsafePrefs = args.contains(restoreUnsafePrefs)};
}

RevertedChoice revertedChoice(const HealthRepairArgs& args) {
  if (args.reSymlinkReverted && args.reclaimReverted)
    throw CLIError("Choose at most one of --re-symlink-reverted, --reclaim-reverted.");
  if (args.reclaimReverted) return RevertedChoice::reclaim;
  return args.reSymlinkReverted ? RevertedChoice::reSymlink : RevertedChoice::none;
}

/// The report, shown; nothing more is to be done if it has no problems.
HealthReport shownReport(const ReadOnlyPlatform& platform) {
  HealthReport report = HealthCheck::run(platform, {Path("/Applications")});
  if (report.problems().empty()) {
    Console::print("Everything healthy. Nothing to repair.");
    return report;
  }
  HealthHumanRenderer::printIssues(report);
  Console::print("");
  return report;
}

/// That it changes nothing is proved by the platform that it is given.
void rehearse(const ReadOnlyPlatform& platform, const HealthRepairArgs& args, RevertedChoice reverted) {
  const HealthRepairPrompt prompt{args};
  HealthRepair::rehearse(platform, shownReport(platform), reverted, prompt.dialog());
}

void takeSnapshot(Platform& platform) {
  const auto result = APFSSnapshotService::create(platform, std::nullopt);
  const bool wasTaken = result.succeeded && result.snapshot;
  Console::print("snapshot: " + (wasTaken ? result.snapshot->name : "skipped"));
  Console::print("");
}

void carryOut(Platform& platform, const HealthRepairArgs& args, RevertedChoice reverted) {
  // Held until the last repair, so that no other run changes what the report says.
  const Turn turn(platform, Console::tellOfWaiting);
  const HealthReport report = shownReport(platform);
  if (report.problems().empty()) return;
  if (!args.noSnapshot) takeSnapshot(platform);
  const HealthRepairPrompt prompt{args};
  HealthRepair::carryOut(platform, report, reverted, prompt.dialog());
}

ExitStatus run(const Invocation& invocation) {
  const HealthRepairArgs args = argsOf(invocation.args);
  const RevertedChoice reverted = revertedChoice(args);
  if (args.dryRun) {
    rehearse(invocation.platform, args, reverted);
  } else {
    carryOut(invocation.platform, args, reverted);
  }
  return ExitStatus::success;
}

constexpr Flag flags[] = {
    dryRun,
    yes,
    removeOrphans,
    removeEmpty,
    removeDangling,
    reSymlinkReverted,
    reclaimReverted,
    noSnapshot,
    repairSpotlightLaunchers,
    forgetMissingTrackedFiles,
    restoreUnsafePrefs,
};
constexpr TellingLine tellingLines[] = {
    {"Everything healthy. Nothing to repair.", ""},
    {"snapshot: skipped", "no local snapshot was taken first"},
    {"  WARN: could not trash …", "an item stayed where it is, whatever the next line says"},
    {"  left as it is: …", "an item stayed: something about it can't be read, has changed, or it is in use"},
    {"  FAIL: …", "a reverted application wasn't moved"},
    {"  FAILED: …", "a preferences file wasn't moved back"},
    {"• [reverted] … — needs …", "a reverted application was only shown"},
};

}  // namespace

constinit const Command repair{
    .words = "health repair",
    .purpose = "offers the repair of each problem",
    .flags = flags,
    .outcomes = {.success = "gone through, whatever failed", .failure = "flags that exclude each other"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn health repair    [--dry-run] [--yes] [--remove-orphans] [--remove-empty] [--remove-dangling] "
        "[--re-symlink-reverted | --reclaim-reverted] [--repair-spotlight-launchers] [--no-snapshot]",
};

}  // namespace quarn::HealthCommands
