#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveRunner.h"
#include "QuarnCLI/move/MoveSelection.h"
#include "QuarnCLI/report/ReportText.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MovePlanner.h"

namespace quarn::MovePlanCommand {

ExitStatus run(const Invocation& invocation) {
  const ReadOnlyPlatform& platform = invocation.platform;
  const DriveInfo drive = MoveArgs::resolveDrive(platform, invocation.args);
  const auto apps = MoveSelection::eligibleApps(platform, invocation.args);
  const auto jobs = MovePlanner::buildAppJobs(platform, apps, drive, MoveArgs::includesData(invocation.args));
  const std::string total = SizeCalculator::format(MoveRunner::totalBytes(jobs));
  const std::string free = SizeCalculator::format(drive.freeBytes);

  Console::print("# target: " + drive.name + "  free=" + free);
  Console::print("# apps eligible: " + std::to_string(apps.size()) +
                 "   jobs: " + std::to_string(jobs.size()) + "   total: " + total);
  Console::print(ReportText::tabSeparated({"size", "source", "->", "destination"}));
  for (const MoveJob& job : jobs) {
    Console::print(ReportText::tabSeparated(
        {SizeCalculator::format(job.bytesTotal), job.source.text(), "->", job.destination.text()}));
  }
  if (drive.freeBytes < MoveRunner::totalBytes(jobs)) {
    Console::print("# WARNING: queue is " + total + " but drive has " + free + " free");
  }
  return ExitStatus::success;
}

}  // namespace quarn::MovePlanCommand
