#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/DriveScanner.h"
#include "QuarnCore/move/MoveJob.h"

/// Carries out jobs one after the other, tells of each on the console, and goes on after a failure.
namespace quarn::MoveRunner {

struct Failure {
  MoveJob job;
  std::string message;
};

struct Result {
  int moved = 0;
  std::vector<Failure> failures;
  std::int64_t bytesMoved = 0;  ///< as the jobs expected
};

/// A job whose drive has been pulled out fails: the folders that it would make would lie on the internal
/// disk, in the drive's place. `progress` shows the running byte counts on standard error; `quitRunning` asks
/// running applications to quit.
Result run(Platform& platform, const DriveInfo& drive, const std::vector<MoveJob>& jobs, bool progress,
           bool quitRunning);

/// The bytes that all jobs expect to move.
std::int64_t totalBytes(const std::vector<MoveJob>& jobs);

}  // namespace quarn::MoveRunner
