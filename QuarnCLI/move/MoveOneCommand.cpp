#include "Platform/Text.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCLI/move/MoveCommands.h"
#include "QuarnCLI/move/MoveFlags.h"
#include "QuarnCLI/move/MoveRunner.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/MovePlanner.h"

namespace quarn::MoveCommands {
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

ExitStatus run(const Invocation& invocation) {
  Platform& platform = invocation.platform;
  const auto choices = MoveArgs::queueChoices(invocation.args);
  const auto runChoices = MoveArgs::runChoices(invocation.args);
  const std::string selector = requiredSelector(invocation.args);
  const DriveInfo drive = MoveArgs::resolveDrive(platform, choices.targetDrive);
  const AppEntry app = appNamed(platform, selector);
  const MoveQueue queue{drive, MovePlanner::buildAppJobs(platform, {app}, drive, choices.includesData)};

  Console::print(app.name + "  ->  " + drive.name + "   " + SizeCalculator::format(queue.totalBytes()) +
                 " (" + std::to_string(queue.jobs.size()) + " jobs)");
  if (queue.jobs.empty()) {
    Console::print("nothing to move.");
    return ExitStatus::success;
  }
  MoveRunner::requireRoom(queue);
  if (runChoices.asksFirst && !Console::confirms()) return ExitStatus::success;
  const auto result = MoveRunner::run(platform, queue, runChoices);
  if (!result.failures.empty()) Console::print("failed: " + std::to_string(result.failures.size()));
  return ExitStatus::success;
}

constexpr Flag flags[] = {MoveFlags::targetDrive, MoveFlags::noData, MoveFlags::yes, MoveFlags::progress,
                          MoveFlags::quitRunning};

constexpr TellingLine tellingLines[] = {
    {"    FAIL: …", "a job failed; one for each"},
    {"failed: N", "so many jobs failed"},
    {"nothing to move.", ""},
    {"Proceed? [y/N] aborted.", "declined"},
};

}  // namespace

constinit const Command one{
    .words = "move one",
    .purpose = "moves the application you name, risky or not",
    .operand = Operand{.name = "<bundle-path|bundle-id>"},
    .flags = flags,
    .outcomes = {.success = "done, nothing to do, or declined",
                 .failure = "no such drive or application, or too little space"},
    .tellingLines = tellingLines,
    .handler = run,
    .usageLine =
        "quarn move one  <bundle-path|bundle-id> [--target-drive <path>] [--no-data] [--yes] "
        "[--progress] [--quit-running]",
};

}  // namespace quarn::MoveCommands
