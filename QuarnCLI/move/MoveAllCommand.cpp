#include "Platform/Text.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/DriveSpace.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveRunner.h"
#include "QuarnCLI/move/MoveSelection.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/APFSSnapshotService.h"
#include "QuarnCore/move/MovePlanner.h"

namespace quarn::MoveAllCommand {
namespace {

using Jobs = std::vector<MoveJob>;

std::string countAndSize(const Jobs& jobs) {
  return std::to_string(jobs.size()) + " (" + SizeCalculator::format(MoveRunner::totalBytes(jobs)) + ")";
}

void printSummary(const DriveInfo& drive, std::size_t appCount, const Jobs& jobs) {
  Console::print("target drive: " + drive.name + " (" + drive.mountPath.text() + ")");
  Console::print("free:         " + SizeCalculator::format(drive.freeBytes));
  Console::print("apps:         " + std::to_string(appCount) + " eligible");
  Console::print("jobs:         " + countAndSize(jobs));
}

void printDryRun(const Jobs& jobs) {
  for (const MoveJob& job : jobs) {
    Console::print("  " + SizeCalculator::format(job.bytesTotal) + "\t" + job.source.text() + " -> " +
                   job.destination.text());
  }
  Console::print("dry-run: no changes made.");
}

void takeSnapshot(Platform& platform) {
  const auto result = APFSSnapshotService::create(platform, std::nullopt);
  if (result.succeeded && result.snapshot) {
    Console::printNow("snapshot: " + result.snapshot->name);
    return;
  }
  const std::string reason = Text::trimmingBlanksAndNewlines(result.standardError);
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

}  // namespace

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const CLIArgs& args = invocation.args;
  const DriveInfo drive = MoveArgs::resolveDrive(platform, args);
  const auto apps = MoveSelection::eligibleApps(platform, args);
  const Jobs jobs = MovePlanner::buildAppJobs(platform, apps, drive, MoveArgs::includesData(args));

  printSummary(drive, apps.size(), jobs);
  if (jobs.empty()) {
    Console::print("nothing to move.");
    return ExitStatus::success;
  }
  DriveSpace::require(drive, MoveRunner::totalBytes(jobs));
  if (args.contains("--dry-run")) {
    printDryRun(jobs);
    return ExitStatus::success;
  }
  if (!args.contains("--yes") && !Console::confirms()) return ExitStatus::success;
  if (!args.contains("--no-snapshot")) takeSnapshot(platform);
  // Failures are told in the result; the run itself was carried out.
  printResult(
      MoveRunner::run(platform, drive, jobs, args.contains("--progress"), args.contains("--quit-running")),
      jobs.size());
  return ExitStatus::success;
}

}  // namespace quarn::MoveAllCommand
