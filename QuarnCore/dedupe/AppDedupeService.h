#pragma once

#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/dedupe/AppDedupePlan.h"

/// Finds launchers that stand beside a real local application with the same identifier, and takes them to the
/// Trash. Never removes a real application or a link, however many duplicates there are.
namespace quarn::AppDedupeService {

/// Returns the folders that are searched where no others are asked for: "/Applications" and the user's own.
std::vector<Path> applicationRoots(const ReadOnlyPlatform& platform);

/// Looks at and measures every bundle in the folders, down to two folders below them. Skips a folder that
/// doesn't exist and bundles that can't be read; never throws. Only groups with something to remove are part
/// of the plan. Among items of one score the first by path stays.
AppDedupePlan plan(const ReadOnlyPlatform& platform, const std::vector<Path>& applicationRoots);

/// Tells what `run` would take, and changes nothing: each item counts as one that went, without a place in
/// the Trash. Without a plan, makes one of `applicationRoots`.
AppDedupeRunResult rehearse(const ReadOnlyPlatform& platform,
                            const std::optional<AppDedupePlan>& plan = std::nullopt);

/// Takes the plan's removable items to the Trash, one after another. One that fails, or isn't what the plan
/// says any more, stays and has a sentence that tells why. One bundle that is reached by two paths goes once,
/// and has the same outcome by both. Without a plan, makes one of `applicationRoots`. Whoever calls this has
/// the `Turn`.
AppDedupeRunResult run(Platform& platform, const std::optional<AppDedupePlan>& plan = std::nullopt);

}  // namespace quarn::AppDedupeService
