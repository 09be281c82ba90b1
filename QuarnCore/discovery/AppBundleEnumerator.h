#pragma once

#include <vector>

#include "Platform/Platform.h"

namespace quarn::AppBundleEnumerator {

inline constexpr int defaultMaxDepth = 2;

/// Appends every item below `root` whose extension is exactly "app", links among them, down to
/// `maxDepth` folders below the root. Never looks inside a bundle. What can't be listed is passed over.
void walk(const ReadOnlyPlatform& platform, const Path& root, int depth, int maxDepth,
          std::vector<Path>& bundles);

}  // namespace quarn::AppBundleEnumerator
