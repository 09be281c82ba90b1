#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveFlags.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MovePlanner.h"
#include "QuarnCore/move/MoveQueue.h"
#include "QuarnCore/move/MoveSelection.h"

namespace quarn::MoveCommands {

namespace {

ExitStatus run(const ReadOnlyInvocation& invocation) {
  const ReadOnlyPlatform& platform = invocation.platform;
  const auto choices = MoveArgs::queueChoices(invocation.args);
  const auto selection = MoveArgs::selectionChoices(invocation.args);
  const DriveInfo drive = MoveArgs::resolveDrive(platform, choices.targetDrive);
  const auto eligible = MoveSelection::eligibleApps(platform, selection);
  const MoveQueue queue{drive, MovePlanner::buildAppJobs(platform, eligible, drive, choices.includesData)};
  const std::string total = SizeCalculator::format(queue.totalBytes());
  const std::string free = SizeCalculator::format(drive.freeBytes);

  Console::print("# target: " + drive.name + "  free=" + free);
  Console::print("# apps eligible: " + std::to_string(eligible.size()) +
                 "   jobs: " + std::to_string(queue.jobs.size()) + "   total: " + total);
  Console::print(ReportText::tabSeparated({"size", "source", "->", "destination"}));
  for (const MoveJob& job : queue.jobs) {
    Console::print(ReportText::tabSeparated(
        {SizeCalculator::format(job.bytesTotal), job.source.text(), "->", job.destination.text()}));
  }
  if (!queue.fits()) Console::print("# WARNING: queue is " + total + " but drive has " + free + " free");
  return ExitStatus::success;
}

constexpr Flag flags[] = {MoveFlags::targetDrive, MoveFlags::noData, MoveFlags::includeRisky,
                          MoveFlags::includeProtected, MoveFlags::includeRunning};

constexpr TellingLine tellingLines[] = {{"# WARNING: queue is …", "more than the drive has room for"}};

}  // namespace

constinit const Command plan{
    .words = "move plan",
    .purpose = "shows what `move all` would move, and where to",
    .flags = flags,
    .outcomes = {.success = "listed", .failure = "no such drive"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn move plan [--target-drive <path>] [--no-data] [--include-risky] [--include-protected]",
};

}  // namespace quarn::MoveCommands
