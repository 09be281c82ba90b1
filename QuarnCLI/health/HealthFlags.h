#pragma once

#include "QuarnCLI/Command.h"
#include "QuarnCLI/FlagNames.h"

/// The flags of the group "health".
namespace quarn::HealthFlags {

inline constexpr Flag dryRun{
    .name = FlagNames::dryRun,
    .meaning = "shows each repair, and changes nothing",
};
inline constexpr Flag yes{
    .name = FlagNames::yes,
    .meaning = "carries out every repair without asking",
};
inline constexpr Flag reSymlinkReverted{
    .name = "--re-symlink-reverted",
    .meaning = "moves applications that an updater brought back to the drive again",
};
inline constexpr Flag reclaimReverted{
    .name = "--reclaim-reverted",
    .meaning = "takes the drive's copy of such applications to the Trash",
};
inline constexpr Flag noSnapshot{
    .name = FlagNames::noSnapshot,
    .meaning = "takes no local snapshot first",
};

/// Each names a repair that is offered without it, too.
inline constexpr Flag removeOrphans{.name = "--remove-orphans", .meaning = "accepted; changes nothing"};
inline constexpr Flag removeEmpty{.name = "--remove-empty", .meaning = "accepted; changes nothing"};
inline constexpr Flag removeDangling{.name = "--remove-dangling", .meaning = "accepted; changes nothing"};
inline constexpr Flag forgetMissingTrackedFiles{
    .name = "--forget-missing-tracked-files",
    .meaning = "accepted; changes nothing",
};
inline constexpr Flag repairSpotlightLaunchers{
    .name = "--repair-spotlight-launchers",
    .meaning = "accepted; changes nothing",
};
inline constexpr Flag restoreUnsafePrefs{
    .name = "--restore-unsafe-prefs",
    .meaning = "accepted; changes nothing",
};

}  // namespace quarn::HealthFlags
