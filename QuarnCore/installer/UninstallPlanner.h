#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/installer/InstallerSession.h"

/// Undoes an installation.
namespace quarn {

namespace UninstallPlanner {
/// Returns the steps as lines of `InstallAction`: each changed path goes to the Trash, a folder after its
/// contents, and each receipt is forgotten.
std::vector<std::string> plan(const InstallerSession& session);
}  // namespace UninstallPlanner

namespace SessionUninstaller {
/// Carries the plan of a session out. Never throws, and tells nothing: a step that can't be taken is left
/// out. So is one for a path that no installation can have brought (see `ChangedPathGuard`), and one for a
/// folder that holds more than the session names, unless it is a bundle: it may have been there before, or be
/// used by others. The applications that the session installed go as a whole.
void carryOut(Platform& platform, const InstallerSession& session);
}  // namespace SessionUninstaller

}  // namespace quarn
