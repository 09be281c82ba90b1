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

/// The other flags that the command accepts don't change what it does.
struct HealthRepairArgs {
  HealthRepairPrompt prompt;
  bool noSnapshot;
  RevertedChoice reverted;
};

RevertedChoice revertedChoice(const CLIArgs& args) {
  const bool reSymlinks = args.contains(reSymlinkReverted);
  const bool reclaims = args.contains(reclaimReverted);
  if (reSymlinks && reclaims)
    throw CLIError("Choose at most one of --re-symlink-reverted, --reclaim-reverted.");
  if (reclaims) return RevertedChoice::reclaim;
  return reSymlinks ? RevertedChoice::reSymlink : RevertedChoice::none;
}

HealthRepairArgs argsOf(const CLIArgs& args) {
  return {.prompt = {.dryRun = args.contains(dryRun), .yes = args.contains(yes)},
          .noSnapshot = args.contains(HealthFlags::noSnapshot),
          .reverted = revertedChoice(args)};
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
void rehearse(const ReadOnlyPlatform& platform, const HealthRepairArgs& args) {
  HealthRepair::rehearse(platform, shownReport(platform), args.reverted, args.prompt.dialog());
}

void takeSnapshot(Platform& platform) {
  const auto result = APFSSnapshotService::create(platform, std::nullopt);
  const bool wasTaken = result.succeeded && result.snapshot;
  Console::print("snapshot: " + (wasTaken ? result.snapshot->name : "skipped"));
  Console::print("");
}

void carryOut(Platform& platform, const HealthRepairArgs& args) {
  // Held until the last repair, so that no other run changes what the report says.
  const Turn turn(platform, Console::tellOfWaiting);
  const HealthReport report = shownReport(platform);
  if (report.problems().empty()) return;
  if (!args.noSnapshot) takeSnapshot(platform);
  HealthRepair::carryOut(platform, report, args.reverted, args.prompt.dialog());
}

ExitStatus run(const Invocation& invocation) {
  const HealthRepairArgs args = argsOf(invocation.args);
  if (args.prompt.dryRun) {
    rehearse(invocation.platform, args);
  } else {
    carryOut(invocation.platform, args);
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
