#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

/// Saves a launcher whose application is gone from where the launcher says it is, if the application has been
/// installed again. Nothing here throws or prints.
namespace quarn::BrokenLauncherRepairService {

/// Returns the first application in /Applications, and then in the user's own folder of applications, that
/// has the bundle identifier for which the launcher was built. Looks as deep as `AppBundleEnumerator` does by
/// default. Another launcher is no replacement. Without an identifier, or with an empty one, there is none.
std::optional<Path> replacementTarget(const ReadOnlyPlatform& platform, const Path& launcher);

/// Makes the launcher open its replacement, signs it and registers it, and returns one sentence for the user
/// that says what was done, or why nothing was. Only the target file changes, and what the signature adds; it
/// is the old one or the new one, whatever stops the run. A bundle that is no launcher is left alone, and so
/// is one that would be written through a link: the bundle itself, or a folder in it. Whether the launcher is
/// signed and registered isn't told.
std::string repair(Platform& platform, const Path& launcher);

}  // namespace quarn::BrokenLauncherRepairService
