#pragma once

#include <optional>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppRecord.h"

/// The installed applications as uninstalling sees them: links and launchers are applications of their own,
/// dangling or not, and the copies to which they lead are found, too. Nothing is measured. Never throws: what
/// can't be read is absent from a record, and a folder that can't be listed is skipped.
namespace quarn::InstalledAppsScanner {

std::vector<Path> scanRoots(const ReadOnlyPlatform& platform);

/// Returns the folders of other programs in the user's library that hold applications.
std::vector<Path> supplementalAppSupportRoots(const ReadOnlyPlatform& platform);

/// Returns one record per bundle identifier, sorted by name as people expect. Where several bundles have the
/// same identifier, a real application is preferred to a launcher, and that one to a link.
std::vector<AppRecord> discover(const ReadOnlyPlatform& platform);

/// Describes one bundle. Nothing if there is neither an item nor a dangling link at the path.
std::optional<AppRecord> inspect(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::InstalledAppsScanner
