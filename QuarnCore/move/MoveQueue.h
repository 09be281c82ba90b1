#pragma once

#include <cstdint>
#include <vector>

#include "QuarnCore/discovery/DriveScanner.h"
#include "QuarnCore/move/MoveJob.h"

namespace quarn {

/// What one run is to move, and onto which drive.
struct MoveQueue {
  DriveInfo drive;
  std::vector<MoveJob> jobs;

  /// The bytes that all jobs expect to move.
  std::int64_t totalBytes() const;
  /// The drive has room for all jobs, as it was looked at. An unknown free space counts as none.
  bool fits() const;
};

}  // namespace quarn
