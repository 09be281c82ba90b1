#pragma once

#include <optional>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/InfoPlist.h"

/// A launcher: a small bundle of its own that opens an application elsewhere.
namespace quarn::LauncherShim {

/// Returns whether a bundle is a launcher: by the target file inside it, the name of its executable, or the
/// suffix of its bundle identifier. `texts` are those of its property list.
bool isExternalAppLauncher(const ReadOnlyPlatform& platform, const Path& bundle,
                           const InfoPlist::Texts& texts);

/// Returns the standardized target, or nothing if the bundle isn't a launcher or the target is missing.
std::optional<Path> target(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::LauncherShim
