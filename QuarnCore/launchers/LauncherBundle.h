#pragma once

#include <string>

#include "Platform/Platform.h"

/// What a launcher consists of.
namespace quarn::LauncherBundle {

/// Writes everything that a launcher for `target` contains into the empty folder `bundle`. The versions and
/// the icon come from `sourceApp`, the name as well, or else it is `name`. Throws.
void fill(Platform& platform, const Path& bundle, const Path& sourceApp, const std::string& name,
          const Path& target);

/// Returns whether a bundle holds nothing but what a launcher consists of. An installer that takes a launcher
/// for the application itself adds the application's files to it.
bool isAllThatIsIn(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::LauncherBundle
