#pragma once

#include "QuarnCLI/Command.h"
#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/Invocation.h"

/// The rows of the commands of the group "backup", and what they share.
namespace quarn::BackupCommands {

inline constexpr Flag targetDrive{
    .name = FlagNames::targetDrive,
    .kind = ValueKind::path,
    .valueName = "path",
    .isRequired = true,
    .meaning = "the drive that holds the backups",
};
inline constexpr Flag flags[] = {targetDrive};

/// Returns the drive that was named. Throws `CLIError` if none was.
Path driveOf(const Places& places, const CLIArgs& args);

extern const Command create;
extern const Command list;

}  // namespace quarn::BackupCommands
