#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/AppEntry.h"
#include "QuarnCore/discovery/DriveScanner.h"
#include "QuarnCore/move/MoveJob.h"

namespace quarn {

/// Makes a queue of jobs from applications. Only looks at the disk; what can't be read is left out.
namespace MovePlanner {
/// Returns a job for each bundle, each followed by one for each of its data paths if asked for. Of several
/// jobs with the same destination the first is kept. An item inside the source of another job has no job of
/// its own. A data path without a known size is measured.
std::vector<MoveJob> buildAppJobs(const ReadOnlyPlatform& platform, const std::vector<AppEntry>& entries,
                                  const DriveInfo& drive, bool includeData);

/// Returns whether an item exists, neither is a link nor lies inside one, and isn't a preferences file.
bool shouldMove(const ReadOnlyPlatform& platform, const Path& source);

/// Throws `MoveRefused` if an item that was planned has become a link or now lies behind one: another run has
/// moved it, or a folder around it, since then. A missing item passes, because the move itself reports it.
void requireStillMovable(const ReadOnlyPlatform& platform, const Path& source);

/// Returns whether this is a preferences file, which must never become a link.
bool isUnsafePrefsPlist(const ReadOnlyPlatform& platform, const Path& item);
}  // namespace MovePlanner

namespace MoveDestination {
/// Returns where a data path goes below `dataParent`: an item in the home folder keeps its path relative to
/// it, an item below "/Library/" goes below "System/", and anything else goes under its own name.
Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent);
Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent,
                     const Path& home);
}  // namespace MoveDestination

}  // namespace quarn
