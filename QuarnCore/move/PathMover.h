#pragma once

#include <cstdint>
#include <functional>

#include "Platform/Platform.h"
#include "QuarnCore/move/ChosenVolume.h"

/// Moves any folder or file to any path and leaves a link. `rsync` copies into whatever is there already, and
/// the copy is checked by its disk use; nothing is recorded. The source is complete until the last step but
/// one. Every operation throws a `LocalizedError`.
namespace quarn::PathMover {

struct Plan {
  Path source;
  Path destination;
  ChosenVolume volume;         ///< the volume of the destination
  std::int64_t sourceKB = 0;   ///< disk use of the source, in units of 1024 bytes
  std::int64_t minimumKB = 0;  ///< the smallest disk use of a good copy: 95 %, rounded down
};

/// Checks whether the move can be made. Changes nothing.
Plan plan(const ReadOnlyPlatform& platform, const Path& source, const Path& destination);

/// Copies with `rsync`, whose output goes to standard output and standard error. Returns the disk use of the
/// copy, in units of 1024 bytes, once the drive holds the copy. A failure leaves what was copied, and the
/// next attempt continues from there.
std::int64_t copy(Platform& platform, const Plan& plan, bool showsProgress);

/// Compares, removes the source and makes the link. A failed comparison, and anything that would stop the
/// removal, is found while the source is complete.
void replaceByLink(Platform& platform, const Plan& plan, std::int64_t destinationKB);

/// Who is told how far the move has come.
struct Listener {
  std::function<void()> waiting;                           ///< another run has the turn
  std::function<void(std::int64_t destinationKB)> copied;  ///< the drive holds the copy
};

/// Waits for the turn of this run, then copies and replaces the source by a link. If it had to wait, it plans
/// once more. Returns false, and has changed nothing, if the source has become a link since it was planned.
bool carryOut(Platform& platform, const Plan& plan, bool showsProgress, const Listener& listener);

}  // namespace quarn::PathMover
