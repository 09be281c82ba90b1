#pragma once

#include <optional>

#include "Platform/Platform.h"
#include "QuarnCore/dedupe/AppDedupePlan.h"

/// What an item is, and when a launcher is a duplicate. The plan goes by these rules, and so does the look
/// right before something is removed.
namespace quarn::AppDedupeRules {

/// Describes a bundle without its size; nothing for one that can't be read or has no identifier.
std::optional<AppDedupeItem> describe(const ReadOnlyPlatform& platform, const Path& bundle);

/// Tells which item of a group stays: the one with the highest score.
int score(const AppDedupeItem& item);

/// Returns whether an application can stand in for launchers: a real one that no link leads to.
bool canReplaceLaunchers(const AppDedupeItem& keep);

/// Returns whether an item is a launcher that duplicates `keep`. A link isn't one, and neither is a launcher
/// of another application that exists.
bool isDuplicate(const ReadOnlyPlatform& platform, const AppDedupeItem& item, const AppDedupeItem& keep);

}  // namespace quarn::AppDedupeRules
