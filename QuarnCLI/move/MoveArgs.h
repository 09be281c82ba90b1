#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCLI/CLIArgs.h"
#include "QuarnCore/discovery/DriveScanner.h"

/// What the commands of the group "move" read from their arguments in common.
namespace quarn::MoveArgs {

/// What follows "--" + `name`; absent if the flag is missing or last.
std::optional<std::string> value(const std::string& name, const CLIArgs& args);

bool includesData(const CLIArgs& args);

/// The drive that "--target-drive" names by mount path or by name, whatever it is; without the flag
/// the first external and writable one. Throws `CLIError` when there is none.
DriveInfo resolveDrive(const ReadOnlyPlatform& platform, const CLIArgs& args);

}  // namespace quarn::MoveArgs
