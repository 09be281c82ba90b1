#pragma once

#include "QuarnCLI/Command.h"
#include "QuarnCLI/FlagNames.h"

/// The flags of the group "move".
namespace quarn::MoveFlags {

inline constexpr Flag targetDrive{
    .name = FlagNames::targetDrive,
    .kind = ValueKind::path,
    .valueName = "a drive's mount path or name",
    .meaning = "moves to this drive, and not to the first external, writable one",
};
inline constexpr Flag noData{
    .name = "--no-data",
    .meaning = "leaves the data folders where they are",
};
inline constexpr Flag includeRisky{
    .name = "--include-risky",
    .meaning = "takes along applications with a system extension, a login item or a store receipt",
};
inline constexpr Flag includeProtected{
    .name = "--include-protected",
    .meaning = "takes along the terminals and editors that people work in",
};
inline constexpr Flag includeRunning{
    .name = "--include-running",
    .meaning = "takes along applications that are running",
};
inline constexpr Flag dryRun{
    .name = FlagNames::dryRun,
    .meaning = "shows what would be moved, and changes nothing",
};
inline constexpr Flag yes{
    .name = FlagNames::yes,
    .meaning = "doesn't ask first",
};
inline constexpr Flag progress{
    .name = FlagNames::progress,
    .meaning = "shows the bytes as they arrive",
};
inline constexpr Flag quitRunning{
    .name = "--quit-running",
    .meaning = "asks a running application to quit",
};
inline constexpr Flag noSnapshot{
    .name = FlagNames::noSnapshot,
    .meaning = "takes no local snapshot first",
};
inline constexpr Flag largestFirst{
    .name = "--largest-first",
    .meaning = "takes the largest application, and not the smallest",
};
inline constexpr Flag all{
    .name = "--all",
    .meaning = "lists the risky applications and those that have been moved, too",
};
inline constexpr Flag source{
    .name = "--source",
    .kind = ValueKind::path,
    .valueName = "path",
    .isRequired = true,
    .meaning = "the folder or file to move",
};
inline constexpr Flag destination{
    .name = "--destination",
    .kind = ValueKind::path,
    .valueName = "path",
    .isRequired = true,
    .meaning = "where it is moved to, with the name that it gets there",
};

}  // namespace quarn::MoveFlags
