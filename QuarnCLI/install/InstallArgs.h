#pragma once

#include <string>

#include "QuarnCLI/Invocation.h"
#include "QuarnCore/installer/InstallerOption.h"
#include "QuarnCore/installer/InstallerSession.h"
#include "QuarnCore/installer/InstallerSource.h"

/// The arguments that several commands of the group read alike. Each function throws `CLIError` if something
/// is missing or unknown, after it has asked for all that it reads.
namespace quarn::InstallArgs {

inline constexpr Operand source{.name = "<source>"};
inline constexpr Operand sessionID{.name = "<session-id>"};

/// What to install, how, and where to.
struct Choice {
  InstallerSource source;
  InstallerOption option;  ///< with the folder for launchers that was given, if one was
  Path targetDrive;
};

Choice choiceOf(const ReadOnlyPlatform& platform, const CLIArgs& args);
InstallerSource sourceOf(const ReadOnlyPlatform& platform, const CLIArgs& args);
InstallerSession sessionOf(const ReadOnlyPlatform& platform, const CLIArgs& args);

}  // namespace quarn::InstallArgs
