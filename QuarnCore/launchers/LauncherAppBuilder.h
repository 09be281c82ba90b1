#pragma once

#include "Platform/Platform.h"
#include "QuarnCore/foundation/InstallerRunReporter.h"

/// Builds launchers: small bundles with the name and the icon of an application elsewhere, which they open.
namespace quarn::LauncherAppBuilder {

/// Makes `launcher` a launcher for the application `target`; the name, the versions and the icon come from
/// `sourceApp`. A launcher that opens `target` already is only registered again. Anything else at the path is
/// moved aside, a link as a link, once the new launcher is complete under a hidden name beside it; a launcher
/// that a killed run left there is used. The new one never replaces anything and is never written into a
/// folder that was there. What a failure leaves of it is moved aside, too, unless it is complete and its
/// place is free: then it waits for the next run. Throws, but not if the launcher can't be signed or
/// registered.
void install(Platform& platform, const Path& sourceApp, const Path& launcher, const Path& target,
             const InstallerRunReporter& reporter);

/// Returns whether a run was killed after it had moved aside what stood at `launcher`, and before its
/// launcher for `target` took the place.
bool wasBrokenOff(const ReadOnlyPlatform& platform, const Path& launcher, const Path& target);

}  // namespace quarn::LauncherAppBuilder
