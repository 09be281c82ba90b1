#pragma once

#include <vector>

#include "Platform/Platform.h"

namespace quarn {

namespace AppBundleScanRoots {
/// The folders in which applications are looked for: the shared one, the system's own if asked for,
/// and the user's if it exists.
std::vector<Path> standardApplicationRoots(const ReadOnlyPlatform& platform, bool includeSystem);

/// The folders directly below the user's support folder that hold at least one bundle.
std::vector<Path> supplementalApplicationSupportRoots(const ReadOnlyPlatform& platform, int maxDepth);
}  // namespace AppBundleScanRoots

namespace AppBundleEnumerator {
inline constexpr int defaultMaxDepth = 2;

/// Appends every item below `root` whose extension is exactly "app", links among them, down to
/// `maxDepth` folders below the root. Never looks inside a bundle. What can't be listed is passed over.
void walk(const ReadOnlyPlatform& platform, const Path& root, int depth, int maxDepth,
          std::vector<Path>& bundles);
}  // namespace AppBundleEnumerator

namespace ExternalAppsRootsDiscovery {
/// The folders of moved applications that exist on mounted volumes, then those of `extra` that exist.
/// The same folder may come twice.
std::vector<Path> roots(const ReadOnlyPlatform& platform, const std::vector<Path>& extra);
}  // namespace ExternalAppsRootsDiscovery

}  // namespace quarn
