#pragma once

#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/InstallerRunReporter.h"
#include "QuarnCore/installer/InstallerOption.h"

/// Installs one application bundle: a copy on the drive, and a launcher for it.
namespace quarn::AppInstallEngine {

/// Returns where the copy of an application goes.
Path destination(const Path& source, const InstallerOption& option, const Path& targetDrive);

/// Copies an application to the drive and makes a launcher for the copy. Returns the action that a session
/// keeps. A good copy that is there already is used, and gets the modes and times of its source; anything
/// else in its place is set aside. The source is left alone, unless the launcher takes its place: then it is
/// moved to the Trash, once the drive holds the copy and the copy was compared.
///
/// Throws `MoveRefused` if no drive is mounted at the target, if the option leads out of it or has a relative
/// folder for launchers, if a volume is mounted inside what would be moved, or if two of the paths lie inside
/// one another; the error of a failed copy, of which nothing remains; an error of the domain "install-app"
/// with code 2 for a copy that isn't like its source, which is set aside; and what `LauncherAppBuilder`
/// throws.
std::string install(Platform& platform, const Path& source, const InstallerOption& option,
                    const Path& targetDrive, const InstallerRunReporter& reporter);

/// Returns whether a run was killed when the copy of an application was complete and its source moved to the
/// Trash, but the launcher hadn't yet taken the place of the source.
bool wasBrokenOff(const ReadOnlyPlatform& platform, const Path& source, const InstallerOption& option,
                  const Path& targetDrive);

}  // namespace quarn::AppInstallEngine
