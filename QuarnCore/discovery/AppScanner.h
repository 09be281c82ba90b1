#pragma once

#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/AppEntry.h"

namespace quarn {

/// Finds the installed applications and describes each. Finding is cheap; measuring is a step of its
/// own. Never throws: an unreadable bundle is named after its file, a folder that can't be listed is
/// passed over.
namespace AppScanner {
std::vector<Path> scanRoots(const ReadOnlyPlatform& platform);

/// Every application of the scan roots, sorted by name as a person's list is; without sizes.
std::vector<AppEntry> discoverMetadata(const ReadOnlyPlatform& platform);

/// Nothing for a launcher whose target is gone.
std::optional<AppEntry> metadataEntry(const ReadOnlyPlatform& platform, const Path& bundle);

/// A copy with the sizes of the bundle and of each data path, links at the top resolved.
AppEntry computeSizes(const ReadOnlyPlatform& platform, const AppEntry& entry);

/// Where a launcher leads; nothing if the bundle is none or its target is gone.
std::optional<Path> launcherShimTarget(const ReadOnlyPlatform& platform, const Path& bundle);

/// Looks only below the shared applications folder; anything elsewhere is neither.
bool isSymbolicLinkOrInsideOne(const ReadOnlyPlatform& platform, const Path& item);
}  // namespace AppScanner

/// What makes moving a bundle risky, read from the bundle itself. What can't be read is false.
namespace AppFlags {
/// It carries a store receipt.
bool isMacAppStore(const ReadOnlyPlatform& platform, const Path& bundle);
bool hasLoginItems(const ReadOnlyPlatform& platform, const Path& bundle);
bool hasSystemExtension(const ReadOnlyPlatform& platform, const Path& bundle);
}  // namespace AppFlags

}  // namespace quarn
