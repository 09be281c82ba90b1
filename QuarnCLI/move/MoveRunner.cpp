#include "QuarnCLI/move/MoveRunner.h"

#include <cstdio>

#include "QuarnCLI/Console.h"
#include "QuarnCLI/move/TakenTurn.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MovePlanner.h"
#include "QuarnCore/move/MoverEngine.h"

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

/// What all jobs of a run have in common.
struct Options {
  const Path& mountPath;
  std::optional<ChosenVolume> drive;  ///< as it was when the run began
  bool progress;
  bool quitRunning;
};

void move(Platform& platform, const MoveJob& job, const Options& options) {
  const TakenTurn turn(platform);
  const ChosenVolume drive =
      options.drive ? *options.drive : ChosenVolume::requiredFor(platform, options.mountPath);
  drive.requireHolds(platform, options.mountPath);
  MovePlanner::requireStillMovable(platform, job.source);
  MoverEngine::moveAndLink(platform, job.source, job.destination.parent(), options.quitRunning, showStatus,
                           options.progress ? ProgressCallback(showProgress) : ProgressCallback());
}

void runJob(Platform& platform, const MoveJob& job, const Options& options, Result& result) {
  const auto start = platform.clock.steadyNow();
  try {
    move(platform, job, options);
  } catch (const LocalizedError& error) {
    if (options.progress) Console::writeError("\n");
    result.failures.push_back({job, error.localizedDescription()});
    Console::printNow("    FAIL: " + result.failures.back().message);
    return;
  }
  if (options.progress) Console::writeError("\n");
  Console::printNow("    ok in " + elapsedText(platform.clock.steadyNow() - start) + " -> " +
                    job.destination.text());
  ++result.moved;
  result.bytesMoved += job.bytesTotal;
}

}  // namespace

Result run(Platform& platform, const DriveInfo& drive, const std::vector<MoveJob>& jobs, bool progress,
           bool quitRunning) {
  const Options options{drive.mountPath, ChosenVolume::holding(platform, drive.mountPath), progress,
                        quitRunning};
  Result result;
  std::size_t number = 0;
  for (const MoveJob& job : jobs) {
    Console::printNow("[" + std::to_string(++number) + "/" + std::to_string(jobs.size()) + "] " + job.label +
                      " (" + SizeCalculator::format(job.bytesTotal) + ")");
    runJob(platform, job, options, result);
  }
  return result;
}

std::int64_t totalBytes(const std::vector<MoveJob>& jobs) {
  std::int64_t total = 0;
  for (const MoveJob& job : jobs) total += job.bytesTotal;
  return total;
}

}  // namespace quarn::MoveRunner
