#pragma once

#include <cstdint>
#include <string>

#include "Platform/Path.h"

namespace quarn {

/// How far a job has come. `progress` (0 to 1) belongs to copying, `message` to a failure.
struct JobStatus {
  enum class Stage { pending, copying, verifying, linking, done, failed };

  Stage stage = Stage::pending;
  double progress = 0;
  std::string message;
  bool operator==(const JobStatus&) const = default;
};

/// One item to move: a bundle or a data folder.
struct MoveJob {
  std::string id;     ///< a UUID, new for every job
  std::string label;  ///< what the console shows
  Path source;
  Path destination;  ///< where the item ends up, with its name
  JobStatus status;
  std::int64_t bytesTotal = 0;  ///< expected
  std::int64_t bytesCopied = 0;
  bool operator==(const MoveJob&) const = default;
};

}  // namespace quarn
