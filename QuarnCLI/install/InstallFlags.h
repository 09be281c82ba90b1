#pragma once

#include "QuarnCLI/Command.h"
#include "QuarnCLI/FlagNames.h"

/// The flags of the group "install".
namespace quarn::InstallFlags {

inline constexpr Flag option{
    .name = "--option",
    .kind = ValueKind::text,
    .valueName = "id",
    .isRequired = true,
    .meaning = "the install option",
};
inline constexpr Flag targetDrive{
    .name = FlagNames::targetDrive,
    .kind = ValueKind::path,
    .valueName = "path",
    .isRequired = true,
    .meaning = "the drive to install onto",
};
inline constexpr Flag applicationLinkRoot{
    .name = "--application-link-root",
    .kind = ValueKind::path,
    .valueName = "path",
    .meaning = "the folder in which applications are linked, in place of the option's",
};
inline constexpr Flag useGantrix{
    .name = "--use-gantrix",
    .meaning = "runs what needs raised rights through gantrix",
};
inline constexpr Flag progress{
    .name = FlagNames::progress,
    .meaning = "tells each step on standard error",
};
inline constexpr Flag verbose{
    .name = FlagNames::verbose,
    .meaning = "the same as --progress",
};

}  // namespace quarn::InstallFlags
