#pragma once

#include <vector>

#include "QuarnCore/installer/InstallerInspection.h"

namespace quarn::ContainedItemScanner {

/// Describes an item that stands by itself, and measures it.
InstallableItem itemAt(const ReadOnlyPlatform& platform, const Path& path, InstallerKind kind);

/// Returns the applications and packages in a folder, at any depth but not inside one another, sorted by
/// path. Hidden items are left out, links are no items and aren't followed, and no file is opened. Throws if
/// the folder itself can't be listed, which doesn't make it empty; one inside it that can't holds nothing.
std::vector<InstallableItem> scan(const ReadOnlyPlatform& platform, const Path& root);

}  // namespace quarn::ContainedItemScanner
