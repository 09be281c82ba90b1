#pragma once

#include <vector>

#include "Platform/Platform.h"

namespace quarn::AppBundleScanRoots {

/// The folders in which applications are looked for: the shared one, the system's own if asked for,
/// and the user's if it exists.
std::vector<Path> standardApplicationRoots(const ReadOnlyPlatform& platform, bool includeSystem);

/// The folders directly below the user's support folder that hold at least one bundle.
std::vector<Path> supplementalApplicationSupportRoots(const ReadOnlyPlatform& platform, int maxDepth);

}  // namespace quarn::AppBundleScanRoots
