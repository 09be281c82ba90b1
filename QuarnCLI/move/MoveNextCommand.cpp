#include <algorithm>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveFlags.h"
#include "QuarnCLI/move/MoveRunner.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MovePlanner.h"
#include "QuarnCore/move/MoveSelection.h"

namespace quarn::MoveCommands {
namespace {

/// The first of equals, which are in the order of their names.
const AppEntry& nextApp(const std::vector<AppEntry>& apps, bool largestFirst) {
  return *std::min_element(apps.begin(), apps.end(), [largestFirst](const AppEntry& a, const AppEntry& b) {
    return largestFirst ? a.totalSize() > b.totalSize() : a.totalSize() < b.totalSize();
  });
}

void printSummary(const AppEntry& app, const MoveQueue& queue) {
  Console::print("next: " + app.name + " (" + SizeCalculator::format(queue.totalBytes()) + " across " +
                 std::to_string(queue.jobs.size()) + " jobs)");
  Console::print("      " + app.bundlePath.text());
  Console::printNow("      -> " + queue.drive.mountPath.text());
}

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const auto choices = MoveArgs::queueChoices(invocation.args);
  const auto selection = MoveArgs::selectionChoices(invocation.args);
  const auto runChoices = MoveArgs::runChoices(invocation.args);
  const bool largestFirst = invocation.args.contains(MoveFlags::largestFirst);
  const DriveInfo drive = MoveArgs::resolveDrive(platform, choices.targetDrive);
  const auto apps = MoveSelection::eligibleApps(platform, selection);
  if (apps.empty()) {
    Console::print("nothing eligible to move.");
    return ExitStatus::attention;
  }
  const AppEntry& app = nextApp(apps, largestFirst);
  const MoveQueue queue{drive, MovePlanner::buildAppJobs(platform, {app}, drive, choices.includesData)};
  printSummary(app, queue);
  if (!queue.fits()) {
    Console::print("SKIP: not enough space on drive.");
    return ExitStatus::failure;
  }
  if (runChoices.asksFirst && !Console::confirms()) return ExitStatus::failure;
  const auto result = MoveRunner::run(platform, queue, runChoices);
  return result.failures.empty() ? ExitStatus::success : ExitStatus::failure;
}

constexpr Flag flags[] = {
    MoveFlags::targetDrive,    MoveFlags::noData,       MoveFlags::includeRisky, MoveFlags::includeProtected,
    MoveFlags::includeRunning, MoveFlags::largestFirst, MoveFlags::yes,          MoveFlags::progress,
    MoveFlags::quitRunning};

constexpr TellingLine tellingLines[] = {
    {"next: … across 0 jobs)", "everything of it has been moved already"},
};

}  // namespace

constinit const Command next{
    .words = "move next",
    .purpose = "moves one application, the smallest; made for a loop in a shell",
    .flags = flags,
    .outcomes = {.success = "moved, or had nothing to move",
                 .failure = "a job failed, no such drive, too little space, or declined",
                 .attention = "nothing is eligible"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn move next [--target-drive <path>] [--no-data] [--include-risky] [--include-protected] "
        "[--include-running] [--largest-first] [--yes] [--progress] [--quit-running]   "
        "# one app, exits 0=ok 2=drained 1=fail",
};

}  // namespace quarn::MoveCommands
