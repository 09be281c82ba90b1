#pragma once

#include <string>
#include <vector>

#include "QuarnCore/installer/Snapshotter.h"
#include "QuarnCore/installer/SourceInstallers.h"

/// Takes applications that a package or a script put onto the startup disk to the drive.
namespace quarn::SafeAppExternalizer {

/// Returns the applications below /Applications, at any depth, that only the second snapshot has and that are
/// safe to move: no links, not from the store, without system extensions and login items, and no launchers,
/// which another run may have made meanwhile. What lies in an application that stays, stays with it. Sorted.
std::vector<Path> newApplications(const ReadOnlyPlatform& platform, const FileSnapshot& before,
                                  const FileSnapshot& after);

/// Installs each application onto the drive, with a launcher in its place. Returns one action for each; one
/// that fails doesn't stop the others. Only what lies below /Applications is taken: the list may come from a
/// session that somebody else wrote.
std::vector<std::string> externalize(Platform& platform, const std::vector<Path>& apps,
                                     const InstallerOption& option, const Path& targetDrive);

}  // namespace quarn::SafeAppExternalizer
