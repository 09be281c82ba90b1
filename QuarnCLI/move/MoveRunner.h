#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCLI/move/MoveArgs.h"
#include "QuarnCore/move/MoveQueue.h"

/// Carries out a queue, one job after the other, and tells of each on the console.
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

/// Throws `CLIError` if the drive has less room than the queue needs.
void requireRoom(const MoveQueue& queue);

/// Goes on with the next job after a failure. Asks nothing. The running byte counts go to standard error.
Result run(Platform& platform, const MoveQueue& queue, const MoveArgs::RunChoices& choices);

}  // namespace quarn::MoveRunner
