#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/InstallerRunReporter.h"

namespace quarn {

/// An application in a folder that was moved as a whole. A link stands in the folder's place, and Spotlight
/// doesn't look behind it; so the application needs a launcher in the folder of applications.
struct NestedAppLauncherCandidate {
  Path folderLink;    ///< the link in the folder of applications
  Path folderTarget;  ///< the folder on the drive
  Path sourceApp;     ///< the application as it is seen through the link
  Path targetApp;     ///< the application in the folder on the drive
  Path launcher;      ///< where the launcher belongs
  bool operator==(const NestedAppLauncherCandidate&) const = default;
};

/// Nothing here throws or prints.
namespace NestedAppLauncherService {

/// Returns the applications behind the links in a folder of applications that lack their launcher. Where
/// anything but a launcher is at the launcher's path, none is needed.
std::vector<NestedAppLauncherCandidate> missingCandidates(const ReadOnlyPlatform& platform,
                                                          const Path& applicationRoot);

/// Returns a sentence for the user that names up to four of the launchers.
std::string detail(const std::vector<NestedAppLauncherCandidate>& group);

/// Builds the launchers that are missing for one link and returns how many were built. A failure is reported,
/// and leaves the launcher missing.
int installMissingLaunchers(Platform& platform, const Path& folderLink, const Path& applicationRoot,
                            const InstallerRunReporter& reporter);

/// Builds the launchers for a folder that has just been moved out of /Applications; from another folder, or
/// for an application, it does nothing. A bundle whose target file is empty is left alone.
void installLaunchers(Platform& platform, const Path& movedFolder, const Path& destination,
                      const InstallerRunReporter& reporter);

}  // namespace NestedAppLauncherService
}  // namespace quarn
