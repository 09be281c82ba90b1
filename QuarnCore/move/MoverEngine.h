#pragma once

#include <functional>

#include "Platform/Platform.h"
#include "QuarnCore/move/FileCopier.h"
#include "QuarnCore/move/MoveJob.h"

/// A move and the way back. The source is removed only after its copy has been verified. A failed copy is set
/// aside, never deleted.
namespace quarn::MoverEngine {

using StatusCallback = std::function<void(const JobStatus&)>;

/// Moves an item into `destinationParent` under its own name, leaves a link in its place and records the
/// move. If it was a folder in /Applications, each application in it gets a launcher there, as far as that
/// works. With `quitRunning` a running application is asked to quit first. Throws `MoveRefused`, `MoverError`
/// or the platform's error. Blocks until the copy is complete. `progress` may be empty.
void moveAndLink(Platform& platform, const Path& source, const Path& destinationParent, bool quitRunning,
                 const StatusCallback& status, const ProgressCallback& progress);

/// Moves what the link or launcher at `link` leads to back to that path, and removes the record of the move.
/// Throws.
void restore(Platform& platform, const Path& link);

}  // namespace quarn::MoverEngine
