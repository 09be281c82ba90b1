#pragma once

#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/AppEntry.h"

namespace quarn {

/// Finds the installed applications and describes each one. Measuring is a separate step, because it takes
/// much longer. Never throws: an unreadable bundle is named after its file, and a folder that can't be listed
/// is skipped.
namespace AppScanner {
std::vector<Path> scanRoots(const ReadOnlyPlatform& platform);

/// Returns every application in the scan roots without sizes, sorted by name as people expect.
std::vector<AppEntry> discoverMetadata(const ReadOnlyPlatform& platform);

/// Returns nothing for a launcher whose target is missing.
std::optional<AppEntry> metadataEntry(const ReadOnlyPlatform& platform, const Path& bundle);

/// Returns a copy with the sizes of the bundle and of each data path. If one of them is a link, its target is
/// measured.
AppEntry computeSizes(const ReadOnlyPlatform& platform, const AppEntry& entry);

/// Returns the target of a launcher, or nothing if the bundle isn't a launcher or its target is missing.
std::optional<Path> launcherShimTarget(const ReadOnlyPlatform& platform, const Path& bundle);

/// Looks only below /Applications; an item elsewhere gives false.
bool isSymbolicLinkOrInsideOne(const ReadOnlyPlatform& platform, const Path& item);
}  // namespace AppScanner

/// Properties of a bundle that make moving it risky, read from the bundle itself. What can't be read is
/// false.
namespace AppFlags {
/// Returns whether the bundle has a store receipt.
bool isMacAppStore(const ReadOnlyPlatform& platform, const Path& bundle);
bool hasLoginItems(const ReadOnlyPlatform& platform, const Path& bundle);
bool hasSystemExtension(const ReadOnlyPlatform& platform, const Path& bundle);
}  // namespace AppFlags

}  // namespace quarn
