#pragma once

#include <vector>

#include "Platform/Platform.h"

namespace quarn::LauncherShimCleaner {

/// Moves the launchers that open `target`, in /Applications and in the user's own folder of applications, to
/// the Trash, and returns them in the order found. Only a bundle with a target file that names `target` is
/// moved, and never a link to one. What the Trash refuses stays. Never throws.
std::vector<Path> cleanupShims(Platform& platform, const Path& target);

}  // namespace quarn::LauncherShimCleaner
