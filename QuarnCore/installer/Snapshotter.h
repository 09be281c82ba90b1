#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/installer/FileSnapshot.h"

/// Finds out what an installer has put on the disk, by a look before and a look after.
namespace quarn::Snapshotter {

/// Returns the folders that packages write to, whether they exist or not.
std::vector<Path> defaultRoots(const Places& places);

/// Looks at everything below the roots that exist; what several roots hold counts once. Hidden items are left
/// out with all below them, bundles are entered, links are not followed: of a root that is a link, or no
/// folder, there is only its own path. Paths are those of the roots, standardized, and what lies below.
///
/// Never throws. A root that can't be looked at is unseen with all below it. The first folder that can't be
/// listed ends its root, and what comes behind it is unseen. A folder that is removed meanwhile doesn't.
FileSnapshot capture(const ReadOnlyPlatform& platform, const std::vector<Path>& roots);

/// Returns the paths of `after` that are not in `before`, sorted byte by byte. Leaves out what `before`
/// couldn't see: a foreign item must not pass for one that was installed.
std::vector<std::string> added(const FileSnapshot& before, const FileSnapshot& after);

}  // namespace quarn::Snapshotter
