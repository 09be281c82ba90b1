#include "Platform/Text.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/DriveSpace.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveRunner.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MovePlanner.h"

namespace quarn::MoveOneCommand {
namespace {

bool isNamed(const AppEntry& entry, const std::string& selector) {
  return Text::equal(entry.bundlePath.text(), selector) ||
         (entry.bundleIdentifier && Text::equal(*entry.bundleIdentifier, selector));
}

AppEntry appNamed(const ReadOnlyPlatform& platform, const std::string& selector) {
  for (const AppEntry& entry : AppScanner::discoverMetadata(platform)) {
    if (isNamed(entry, selector)) return AppScanner::computeSizes(platform, entry);
  }
  throw CLIError("App not found: " + selector);
}

std::string requiredSelector(const CLIArgs& args) {
  if (const auto selector = args.positional()) return *selector;
  throw CLIError(
      "Usage: move one <bundle-path|bundle-id> [--target-drive <path>] [--no-data] [--yes] [--progress]");
}

}  // namespace

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const CLIArgs& args = invocation.args;
  const std::string selector = requiredSelector(args);
  const DriveInfo drive = MoveArgs::resolveDrive(platform, args);
  const AppEntry app = appNamed(platform, selector);
  const auto jobs = MovePlanner::buildAppJobs(platform, {app}, drive, MoveArgs::includesData(args));
  const std::int64_t total = MoveRunner::totalBytes(jobs);

  Console::print(app.name + "  ->  " + drive.name + "   " + SizeCalculator::format(total) + " (" +
                 std::to_string(jobs.size()) + " jobs)");
  if (jobs.empty()) {
    Console::print("nothing to move.");
    return ExitStatus::success;
  }
  DriveSpace::require(drive, total);
  if (!args.contains("--yes") && !Console::confirms()) return ExitStatus::success;
  const auto result =
      MoveRunner::run(platform, drive, jobs, args.contains("--progress"), args.contains("--quit-running"));
  if (!result.failures.empty()) Console::print("failed: " + std::to_string(result.failures.size()));
  return ExitStatus::success;
}

}  // namespace quarn::MoveOneCommand
