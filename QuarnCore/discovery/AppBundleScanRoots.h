#pragma once

#include <vector>

#include "Platform/Platform.h"

namespace quarn {

namespace AppBundleScanRoots {
/// Returns the folders to search for applications: the shared one, the system's own if asked for, and the
/// user's if it exists.
std::vector<Path> standardApplicationRoots(const ReadOnlyPlatform& platform, bool includeSystem);

/// Returns the folders directly below the user's support folder that contain at least one bundle.
std::vector<Path> supplementalApplicationSupportRoots(const ReadOnlyPlatform& platform, int maxDepth);
}  // namespace AppBundleScanRoots

namespace AppBundleEnumerator {
inline constexpr int defaultMaxDepth = 2;

/// Appends every item below `root` whose extension is exactly "app", links included, down to `maxDepth`
/// folders below the root. Never looks inside a bundle. Skips folders that can't be listed.
void walk(const ReadOnlyPlatform& platform, const Path& root, int depth, int maxDepth,
          std::vector<Path>& bundles);
}  // namespace AppBundleEnumerator

namespace ExternalAppsRootsDiscovery {
/// Returns the folders of moved applications that exist on mounted volumes, followed by the folders of
/// `extra` that exist. A folder may occur twice.
std::vector<Path> roots(const ReadOnlyPlatform& platform, const std::vector<Path>& extra);
}  // namespace ExternalAppsRootsDiscovery

}  // namespace quarn
