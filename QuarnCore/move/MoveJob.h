#pragma once

#include <cstdint>
#include <string>

#include "Platform/Path.h"

namespace quarn {

/// How far a job has come. `progress` (0 to 1) is used while copying, `message` after a failure.
struct JobStatus {
  enum class Stage { pending, copying, verifying, linking, done, failed };

  Stage stage = Stage::pending;
  double progress = 0;
  std::string message;
  bool operator==(const JobStatus&) const = default;
};

/// An item to move: a bundle or a data folder.
struct MoveJob {
  std::string id;     ///< a UUID, new for every job
  std::string label;  ///< the text for the console
  Path source;
  Path destination;  ///< the final path of the item, including its name
  JobStatus status;
  std::int64_t bytesTotal = 0;  ///< expected
  std::int64_t bytesCopied = 0;
  bool operator==(const MoveJob&) const = default;
};

}  // namespace quarn
