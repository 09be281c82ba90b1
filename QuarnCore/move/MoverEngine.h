#pragma once

#include <functional>

#include "Platform/Platform.h"
#include "QuarnCore/move/FileCopier.h"
#include "QuarnCore/move/MoveJob.h"

/// One move and the way back. The source is touched only after its copy has been verified, and a copy
/// that failed is set aside, never deleted.
namespace quarn::MoverEngine {

using StatusCallback = std::function<void(const JobStatus&)>;

/// Moves an item into `destinationParent` under its own name, leaves a link at its place and records
/// the move. `quitRunning` asks a running application to quit first. Throws `MoveRefused`, `MoverError`
/// or the platform's error. Blocks for the length of the copy; `progress` may be empty.
void moveAndLink(Platform& platform, const Path& source, const Path& destinationParent, bool quitRunning,
                 const StatusCallback& status, const ProgressCallback& progress);

/// Brings home what a link, or a launcher, at `link` leads to, and forgets the move. Throws.
void restore(Platform& platform, const Path& link);

}  // namespace quarn::MoverEngine
