#include <algorithm>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveRunner.h"
#include "QuarnCLI/move/MoveSelection.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MovePlanner.h"

namespace quarn::MoveNextCommand {
namespace {

/// The first of equals, which are in the order of their names.
const AppEntry& nextApp(const std::vector<AppEntry>& apps, bool largestFirst) {
  return *std::min_element(apps.begin(), apps.end(), [largestFirst](const AppEntry& a, const AppEntry& b) {
    return largestFirst ? a.totalSize() > b.totalSize() : a.totalSize() < b.totalSize();
  });
}

void printSummary(const AppEntry& app, const DriveInfo& drive, const std::vector<MoveJob>& jobs) {
  Console::print("next: " + app.name + " (" + SizeCalculator::format(MoveRunner::totalBytes(jobs)) +
                 " across " + std::to_string(jobs.size()) + " jobs)");
  Console::print("      " + app.bundlePath.text());
  Console::printNow("      -> " + drive.mountPath.text());
}

}  // namespace

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const CLIArgs& args = invocation.args;
  const DriveInfo drive = MoveArgs::resolveDrive(platform, args);
  const auto apps = MoveSelection::eligibleApps(platform, args);
  if (apps.empty()) {
    Console::print("nothing eligible to move.");
    return ExitStatus::attention;
  }
  const AppEntry& app = nextApp(apps, args.contains("--largest-first"));
  const auto jobs = MovePlanner::buildAppJobs(platform, {app}, drive, MoveArgs::includesData(args));
  printSummary(app, drive, jobs);
  if (drive.freeBytes < MoveRunner::totalBytes(jobs)) {
    Console::print("SKIP: not enough space on drive.");
    return ExitStatus::failure;
  }
  if (!args.contains("--yes") && !Console::confirms()) return ExitStatus::failure;
  const auto result =
      MoveRunner::run(platform, drive, jobs, args.contains("--progress"), args.contains("--quit-running"));
  return result.failures.empty() ? ExitStatus::success : ExitStatus::failure;
}

}  // namespace quarn::MoveNextCommand
