#include "QuarnCLI/move/MoveRunner.h"

#include <cstdio>

#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/JobRunner.h"

namespace quarn::MoveRunner {
namespace {

using Stage = JobStatus::Stage;

void showStatus(const JobStatus& status) {
  if (status.stage == Stage::verifying) Console::printNow("    verifying");
  if (status.stage == Stage::linking) Console::printNow("    linking");
}

/// Overwrites itself, so it ends with a carriage return.
void showProgress(std::int64_t copied, std::int64_t total) {
  if (total < 1) return;
  const auto percentage =
      static_cast<std::int64_t>(static_cast<double>(copied) / static_cast<double>(total) * 100);
  Console::writeError("    " + SizeCalculator::format(copied) + " / " + SizeCalculator::format(total) + "  " +
                      std::to_string(percentage) + "%   \r");
}

std::string elapsedText(std::chrono::steady_clock::duration elapsed) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1fs", std::chrono::duration<double>(elapsed).count());
  return text;
}

JobRunner::Listener listener(bool showsProgress) {
  return {.waiting = Console::tellOfWaiting,
          .status = showStatus,
          .progress = showsProgress ? ProgressCallback(showProgress) : ProgressCallback()};
}

void runJob(Platform& platform, const JobRunner::Run& run, const MoveJob& job, bool showsProgress,
            Result& result) {
  const auto start = platform.clock.steadyNow();
  try {
    JobRunner::carryOut(platform, run, job, listener(showsProgress));
  } catch (const LocalizedError& error) {
    if (showsProgress) Console::writeError("\n");
    result.failures.push_back({job, error.localizedDescription()});
    Console::printNow("    FAIL: " + result.failures.back().message);
    return;
  }
  if (showsProgress) Console::writeError("\n");
  Console::printNow("    ok in " + elapsedText(platform.clock.steadyNow() - start) + " -> " +
                    job.destination.text());
  ++result.moved;
  result.bytesMoved += job.bytesTotal;
}

}  // namespace

void requireRoom(const MoveQueue& queue) {
  if (queue.fits()) return;
  throw CLIError("Not enough space: need " + SizeCalculator::format(queue.totalBytes()) + ", have " +
                 SizeCalculator::format(queue.drive.freeBytes));
}

Result run(Platform& platform, const MoveQueue& queue, const MoveArgs::RunChoices& choices) {
  const auto run = JobRunner::begin(platform, queue.drive.mountPath, choices.quitsRunning);
  Result result;
  std::size_t number = 0;
  for (const MoveJob& job : queue.jobs) {
    Console::printNow("[" + std::to_string(++number) + "/" + std::to_string(queue.jobs.size()) + "] " +
                      job.label + " (" + SizeCalculator::format(job.bytesTotal) + ")");
    runJob(platform, run, job, choices.showsProgress, result);
  }
  return result;
}

}  // namespace quarn::MoveRunner
