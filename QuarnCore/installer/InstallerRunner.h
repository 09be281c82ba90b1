#pragma once

#include "QuarnCore/installer/InstallerSession.h"
#include "QuarnCore/installer/InstallerSource.h"
#include "QuarnCore/installer/SourceInstallers.h"

namespace quarn::InstallerRunner {

/// Installs from a source, finds out what changed, and records it as a session. The session is on the disk
/// before any application goes to the drive, so that a run that is killed can be finished by
/// `ResumeCoordinator`. If the installation fails, a session with the status `failed` is saved, and the error
/// is thrown. An error in saving the session is thrown, too.
InstallerSession run(Platform& platform, const InstallerSource& source, const InstallRequest& request);

}  // namespace quarn::InstallerRunner
