#pragma once

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthReport.h"

/// What a repair looks at before it changes anything. What a report says comes from records and links that
/// anybody may have written. Each function throws `MoveRefused`, or `MoverError` for a running application,
/// with a sentence that says why.
namespace quarn::HealthRepairGuard {

/// An item may go to the Trash if it doesn't belong where it is, is no record or backup of this tool, and no
/// other volume is mounted inside: that would go with it.
void requireTrashable(const ReadOnlyPlatform& platform, const Path& item);

/// The link leads where the report says, and what is there is as broken. It may have looked so because it
/// couldn't be looked at, which throws the error that says why.
void requireBroken(const ReadOnlyPlatform& platform, const HealthIssue& issue);

/// Still nothing in the folder for applications leads to an orphan or has its name. Each item there is looked
/// at again, because a link that couldn't be seen when the report was taken makes an orphan of what it leads
/// to. Throws the error if one can't be seen now.
void requireStillOrphan(const ReadOnlyPlatform& platform, const HealthIssue& issue);

/// The item is there, is no link, and no link in the folder for applications leads to its copy. Throws the
/// error if one of them can't be looked at.
void requireStillReverted(const ReadOnlyPlatform& platform, const HealthIssue& issue);

/// A reverted application, or its data, is at a place that a move takes things from, isn't a launcher, and
/// has its copy under its own name in the folder for moved items of a mounted drive, where no healthy link
/// leads.
void requirePlausible(const ReadOnlyPlatform& platform, const HealthReport& report, const HealthIssue& issue);

/// What stops a move of the application, and can be known before its old copy goes to the Trash.
void requireMovable(const ReadOnlyPlatform& platform, const Path& source);

/// A link in the place of a preferences file leads to one, seen from the folder of the link.
void requirePreferencesFile(const ReadOnlyPlatform& platform, const Path& link);

/// Returns the drive in whose folder for moved items a path lies, after all links on it: "/Volumes/<name>",
/// or nothing.
std::optional<Path> driveOf(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::HealthRepairGuard
