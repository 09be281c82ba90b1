#pragma once

#include "Platform/Platform.h"
#include "QuarnCore/dedupe/AppDedupePlan.h"

/// What is looked at once more right before a launcher goes to the Trash. A plan is a list of paths, and
/// another program may have put something else there by then.
namespace quarn::AppDedupeGuard {

/// Throws `MoveRefused` with a sentence that says why, unless all of this holds: what stands at the item's
/// path is still a duplicate of the application that stays, and neither lies in the other; the target of the
/// launcher could be read, and could be looked for; no other volume is mounted inside; and it isn't a place
/// that this tool never removes, nor in one of its own folders. Throws `PlatformError` if nothing is there.
void requireRemovable(const ReadOnlyPlatform& platform, const AppDedupeItem& item, const AppDedupeItem& keep);

}  // namespace quarn::AppDedupeGuard
