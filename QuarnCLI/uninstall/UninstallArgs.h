#pragma once

#include "QuarnCLI/Invocation.h"
#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/UninstallSelection.h"

/// The arguments that several commands of the group read alike.
namespace quarn::UninstallArgs {

inline constexpr Operand appPath{.name = "<app-path>"};

/// Returns the application that was named. Throws `CLIError` if none was, or if there is nothing at its path.
AppRecord appOf(const ReadOnlyPlatform& platform, const CLIArgs& args);

/// Returns what is to go beside the application: what was named, or all of the usual if nothing was.
UninstallSelection uninstallSelectionDefaultAll(const CLIArgs& args);

}  // namespace quarn::UninstallArgs
