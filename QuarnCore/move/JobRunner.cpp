#include "QuarnCore/move/JobRunner.h"

#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/move/MovePlanner.h"

namespace quarn::JobRunner {

Run begin(const ReadOnlyPlatform& platform, const Path& mountPath, bool quitsRunning) {
  return {mountPath, ChosenVolume::holding(platform, mountPath), quitsRunning};
}

void carryOut(Platform& platform, const Run& run, const MoveJob& job, const Listener& listener) {
  const Turn turn(platform, listener.waiting);
  const ChosenVolume volume = run.volume ? *run.volume : ChosenVolume::requiredFor(platform, run.mountPath);
  volume.requireHolds(platform, run.mountPath);
  MovePlanner::requireStillMovable(platform, job.source);
  MoverEngine::moveAndLink(platform, job.source, job.destination.parent(), run.quitsRunning, listener.status,
                           listener.progress);
}

}  // namespace quarn::JobRunner
