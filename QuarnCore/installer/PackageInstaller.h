#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/InstallerRunReporter.h"

/// Installs packages with the system's `installer`.
namespace quarn::PackageInstaller {

/// Installs a package onto the startup volume, and returns the action that a session keeps. Throws what
/// `installer` wrote (domain "pkg-install", its exit status as the code). The tool has no time limit.
///
/// Before that, an application in /Applications that the package names, and that is a link to another volume,
/// makes room. The link is removed, and the copy that it leads to waits beside its place under a hidden name
/// (".quarn-replaced-<8 digits>"): it goes to the Trash when the package is installed, and both are put back
/// if it isn't. `gantrix` removes both for good. Only a copy that is an application is touched; other links
/// are left alone, as is one of which either part can't be moved.
std::string install(Platform& platform, const Path& package, bool useGantrix,
                    const InstallerRunReporter& reporter);

/// Returns the applications directly in /Applications that the lines of a package's description name: of each
/// line the first one.
std::vector<Path> targetsNamedIn(std::string_view description);

}  // namespace quarn::PackageInstaller
