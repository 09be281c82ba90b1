#include "QuarnCLI/move/MoveRunner.h"

#include <cstdio>

#include "QuarnCLI/Console.h"
#include "QuarnCore/foundation/SizeCalculator.h"
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

void move(Platform& platform, const MoveJob& job, bool progress, bool quitRunning) {
  MoverEngine::moveAndLink(platform, job.source, job.destination.parent(), quitRunning, showStatus,
                           progress ? ProgressCallback(showProgress) : ProgressCallback());
}

void runJob(Platform& platform, const MoveJob& job, bool progress, bool quitRunning, Result& result) {
  const auto start = platform.clock.steadyNow();
  try {
    move(platform, job, progress, quitRunning);
  } catch (const LocalizedError& error) {
    if (progress) Console::writeError("\n");
    result.failures.push_back({job, error.localizedDescription()});
    Console::printNow("    FAIL: " + result.failures.back().message);
    return;
  }
  if (progress) Console::writeError("\n");
  Console::printNow("    ok in " + elapsedText(platform.clock.steadyNow() - start) + " -> " +
                    job.destination.text());
  ++result.moved;
  result.bytesMoved += job.bytesTotal;
}

}  // namespace

Result run(Platform& platform, const std::vector<MoveJob>& jobs, bool progress, bool quitRunning) {
  Result result;
  std::size_t number = 0;
  for (const MoveJob& job : jobs) {
    Console::printNow("[" + std::to_string(++number) + "/" + std::to_string(jobs.size()) + "] " + job.label +
                      " (" + SizeCalculator::format(job.bytesTotal) + ")");
    runJob(platform, job, progress, quitRunning, result);
  }
  return result;
}

std::int64_t totalBytes(const std::vector<MoveJob>& jobs) {
  std::int64_t total = 0;
  for (const MoveJob& job : jobs) total += job.bytesTotal;
  return total;
}

}  // namespace quarn::MoveRunner
