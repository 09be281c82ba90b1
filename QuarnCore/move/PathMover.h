#pragma once

#include <cstdint>

#include "Platform/Platform.h"
#include "QuarnCore/move/ChosenVolume.h"

/// Moves any folder or file to a place of any name and leaves a link: copied by `rsync` into what may be
/// there already, proved by disk use, nothing recorded. The source is whole until the very last step but one.
/// Every operation throws a `LocalizedError`.
namespace quarn::PathMover {

struct Plan {
  Path source;
  Path destination;
  ChosenVolume volume;         ///< that of the destination
  std::int64_t sourceKB = 0;   ///< disk use of the source, in units of 1024 bytes
  std::int64_t minimumKB = 0;  ///< the least that a good copy takes: 95 %, rounded down
};

/// Looks whether the move can be made, and changes nothing.
Plan plan(const ReadOnlyPlatform& platform, const Path& source, const Path& destination);

/// Copies, with `rsync`'s own output on standard output and standard error, and returns when the drive holds
/// the copy: its disk use, in units of 1024 bytes. A failure leaves what was copied; the next attempt goes on
/// from there.
std::int64_t copy(Platform& platform, const Plan& plan, bool showsProgress);

/// Compares, removes the source and leaves a link. A failed comparison, or anything that stands in the way of
/// the removal, is found while the source is whole.
void replaceByLink(Platform& platform, const Plan& plan, std::int64_t destinationKB);

}  // namespace quarn::PathMover
