#pragma once

#include <functional>
#include <optional>

#include "Platform/Platform.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MoveJob.h"
#include "QuarnCore/move/MoverEngine.h"

/// Carries out the jobs of a queue, each only after a last look: between the plan and the job another run may
/// have moved the item, and the drive may have been pulled out.
namespace quarn::JobRunner {

/// What all jobs of a run have in common.
struct Run {
  Path mountPath;
  std::optional<ChosenVolume> volume;  ///< as the run began; absent if nothing was mounted there
  bool quitsRunning = false;           ///< a running application is asked to quit
};

/// Who is told how far a job has come.
struct Listener {
  std::function<void()> waiting;  ///< another run has the turn
  MoverEngine::StatusCallback status;
  ProgressCallback progress;  ///< may be empty
};

Run begin(const ReadOnlyPlatform& platform, const Path& mountPath, bool quitsRunning);

/// Waits for the turn of this run, and moves the item if its drive is still the one that was chosen and no
/// other run has moved it. Throws a `LocalizedError`; the other jobs can be carried out all the same. A job
/// whose drive has been pulled out fails: the folders that it would make would lie on the internal disk, in
/// the drive's place.
void carryOut(Platform& platform, const Run& run, const MoveJob& job, const Listener& listener);

}  // namespace quarn::JobRunner
