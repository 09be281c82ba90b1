#include "Platform/Text.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveFlags.h"
#include "QuarnCLI/move/MoveRunner.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/APFSSnapshotService.h"
#include "QuarnCore/move/MovePlanner.h"
#include "QuarnCore/move/MoveSelection.h"

namespace quarn::MoveCommands {
namespace {

/// All that the command reads from its arguments.
struct Choices {
  MoveArgs::QueueChoices queue;
  MoveSelection::Choices selection;
  MoveArgs::RunChoices run;
  bool changesNothing;
  bool takesSnapshot;
};

Choices choicesOf(const CLIArgs& args) {
  return {.queue = MoveArgs::queueChoices(args),
          .selection = MoveArgs::selectionChoices(args),
          .run = MoveArgs::runChoices(args),
          .changesNothing = args.contains(MoveFlags::dryRun),
          .takesSnapshot = !args.contains(MoveFlags::noSnapshot)};
}

void printSummary(const MoveQueue& queue, std::size_t appCount) {
  const DriveInfo& drive = queue.drive;
  Console::print("target drive: " + drive.name + " (" + drive.mountPath.text() + ")");
  Console::print("free:         " + SizeCalculator::format(drive.freeBytes));
  Console::print("apps:         " + std::to_string(appCount) + " eligible");
  Console::print("jobs:         " + std::to_string(queue.jobs.size()) + " (" +
                 SizeCalculator::format(queue.totalBytes()) + ")");
}

/// What a run would begin with, told; no jobs if there is nothing to move. Throws `CLIError` if the drive has
/// no room for it.
MoveQueue announcedQueue(const ReadOnlyPlatform& platform, const Choices& choices) {
  const DriveInfo drive = MoveArgs::resolveDrive(platform, choices.queue.targetDrive);
  const auto eligible = MoveSelection::eligibleApps(platform, choices.selection);
  MoveQueue queue{drive, MovePlanner::buildAppJobs(platform, eligible, drive, choices.queue.includesData)};
  printSummary(queue, eligible.size());
  if (queue.jobs.empty()) {
    Console::print("nothing to move.");
    return queue;
  }
  MoveRunner::requireRoom(queue);
  return queue;
}

/// The dry run. That it changes nothing is proved by the platform that it is given.
ExitStatus preview(const ReadOnlyPlatform& platform, const Choices& choices) {
  const MoveQueue queue = announcedQueue(platform, choices);
  if (queue.jobs.empty()) return ExitStatus::success;
  for (const MoveJob& job : queue.jobs) {
    Console::print("  " + SizeCalculator::format(job.bytesTotal) + "\t" + job.source.text() + " -> " +
                   job.destination.text());
  }
  Console::print("dry-run: no changes made.");
  return ExitStatus::success;
}

void takeSnapshot(Platform& platform) {
  const auto result = APFSSnapshotService::create(platform, std::nullopt);
  if (result.succeeded && result.snapshot) {
    Console::printNow("snapshot: " + result.snapshot->name);
    return;
  }
  const std::string reason = Text::trimmingWhitespaceAndNewlines(result.standardError);
  Console::printNow("snapshot: skipped (" + (reason.empty() ? "unsupported" : reason) + ")");
}

void printResult(const MoveRunner::Result& result, std::size_t jobCount) {
  Console::print("---");
  Console::print("moved:  " + std::to_string(result.moved) + " / " + std::to_string(jobCount) + " (" +
                 SizeCalculator::format(result.bytesMoved) + ")");
  if (result.failures.empty()) return;
  Console::print("failed: " + std::to_string(result.failures.size()));
  for (const MoveRunner::Failure& failure : result.failures) {
    Console::print("  " + failure.job.source.text() + "  ::  " + failure.message);
  }
}

ExitStatus carryOut(Platform& platform, const Choices& choices) {
  const MoveQueue queue = announcedQueue(platform, choices);
  if (queue.jobs.empty()) return ExitStatus::success;
  if (choices.run.asksFirst && !Console::confirms()) return ExitStatus::success;
  if (choices.takesSnapshot) takeSnapshot(platform);
  // Failures are told in the result; the run itself was carried out.
  printResult(MoveRunner::run(platform, queue, choices.run), queue.jobs.size());
  return ExitStatus::success;
}

ExitStatus run(const Invocation& invocation) {
  const Choices choices = choicesOf(invocation.args);
  return choices.changesNothing ? preview(invocation.platform, choices)
                                : carryOut(invocation.platform, choices);
}

constexpr Flag flags[] = {
    MoveFlags::targetDrive,    MoveFlags::noData,    MoveFlags::includeRisky, MoveFlags::includeProtected,
    MoveFlags::includeRunning, MoveFlags::dryRun,    MoveFlags::yes,          MoveFlags::progress,
    MoveFlags::quitRunning,    MoveFlags::noSnapshot};

constexpr TellingLine tellingLines[] = {
    {"    FAIL: …", "a job failed; one for each"},
    {"failed: N", "so many jobs failed"},
    {"nothing to move.", ""},
    {"snapshot: skipped (…", "no local snapshot was taken first"},
    {"Proceed? [y/N] aborted.", "declined"},
};

}  // namespace

constinit const Command all{
    .words = "move all",
    .purpose = "moves every eligible application and its data, after a local snapshot",
    .flags = flags,
    .outcomes = {.success = "done, nothing to do, or declined",
                 .failure = "no such drive, or too little space"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn move all  [--target-drive <path>] [--no-data] [--include-risky] [--include-protected] "
        "[--dry-run] [--yes] [--progress] [--quit-running] [--no-snapshot]",
};

}  // namespace quarn::MoveCommands
