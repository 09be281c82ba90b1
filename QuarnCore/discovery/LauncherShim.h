#pragma once

#include <optional>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/InfoPlist.h"

/// A launcher: a small real bundle that opens an application elsewhere.
namespace quarn::LauncherShim {

/// By the target file inside it, its executable's name or the ending of its bundle identifier; `texts`
/// are those of its property list.
bool isExternalAppLauncher(const ReadOnlyPlatform& platform, const Path& bundle,
                           const InfoPlist::Texts& texts);

/// Where it leads, standardized; nothing if the bundle is no launcher or the target is gone.
std::optional<Path> target(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::LauncherShim
