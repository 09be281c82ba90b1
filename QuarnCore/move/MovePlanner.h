#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/AppEntry.h"
#include "QuarnCore/discovery/DriveScanner.h"
#include "QuarnCore/move/MoveJob.h"

/// From applications to a queue of jobs. Looks at the disk and changes nothing; what can't be read is
/// left out.
namespace quarn::MovePlanner {

/// A job for each bundle, followed by one for each of its data paths if asked for. Of several jobs
/// with one destination the first stays; what lies in the source of another job goes with that one.
/// A data path that the entry has no size of is measured.
std::vector<MoveJob> buildAppJobs(const ReadOnlyPlatform& platform, const std::vector<AppEntry>& entries,
                                  const DriveInfo& drive, bool includeData);

/// It exists, is neither a link nor inside one, and is no preferences file.
bool shouldMove(const ReadOnlyPlatform& platform, const Path& source);

/// Throws `MoveRefused` if an item that was planned has become a link, or lies behind one: another run has
/// moved it, or a folder around it, since. An item that is gone passes; the move tells that itself.
void requireStillMovable(const ReadOnlyPlatform& platform, const Path& source);

/// A preferences file, which must never become a link.
bool isUnsafePrefsPlist(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::MovePlanner
