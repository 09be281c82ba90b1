#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/InstallerRunReporter.h"
#include "QuarnCore/installer/InstallerOption.h"
#include "QuarnCore/installer/InstallerSession.h"

/// Finishes sessions whose applications have still to go to the drive.
namespace quarn {

namespace ExternalizeFinalizer {
/// Takes the pending applications of a session to the drive, and saves and returns the session as it is then:
/// `done`, or unchanged but for its actions if one of them failed. What is gone, has become a link, or lies
/// in another one of them and goes along with it, is left out. One that a killed run had replaced already,
/// but for its launcher, gets the launcher. Throws only if the session can't be saved.
InstallerSession finalize(Platform& platform, const InstallerSession& session, const InstallerOption& option,
                          const Path& targetDrive, const InstallerRunReporter& reporter);
}  // namespace ExternalizeFinalizer

namespace ResumeCoordinator {
/// Finishes a session; one that isn't pending is returned as it is. Throws errors of the domain
/// "install-resume": 1 for a session that doesn't exist, 2 for one whose option doesn't exist any more.
InstallerSession resume(Platform& platform, const std::string& sessionID,
                        const InstallerRunReporter& reporter);
}  // namespace ResumeCoordinator

namespace PendingSessionsLookup {
/// Returns the sessions that are pending, newest first.
std::vector<InstallerSession> all(const ReadOnlyPlatform& platform);
}  // namespace PendingSessionsLookup

}  // namespace quarn
