#pragma once

#include "Platform/Platform.h"
#include "QuarnCore/foundation/InstallerRunReporter.h"

/// The system's tools to which a launcher is handed when it is written. Nothing here throws.
namespace quarn::LauncherTools {

/// Gives a launcher an ad-hoc signature. One without it still opens for the user who asked for it.
void sign(Platform& platform, const Path& launcher, const InstallerRunReporter& reporter);

/// Tells the system of the launcher, so that Spotlight and the Finder show it at once. Does nothing where the
/// system has no tool for it.
void registerLauncher(Platform& platform, const Path& launcher, const InstallerRunReporter& reporter);

}  // namespace quarn::LauncherTools
