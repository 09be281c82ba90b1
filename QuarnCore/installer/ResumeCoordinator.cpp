#include "QuarnCore/installer/ResumeCoordinator.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/installer/AppInstallEngine.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/installer/InstallerOptionLoader.h"
#include "QuarnCore/installer/SafeAppExternalizer.h"
#include "QuarnCore/installer/SessionStore.h"

namespace quarn {
namespace {

constexpr const char* errorDomain = "install-resume";
constexpr int noSession = 1;
constexpr int unknownOption = 2;

/// An application that can't be looked at isn't gone: its own installation tells why it fails.
bool isStillThere(const ReadOnlyPlatform& platform, const Path& app) {
  if (platform.files.isSymbolicLink(app)) return false;
  const Sighting place = sight(platform.files, app);
  return place.exists || place.failure;
}

std::vector<Path> stillPending(const ReadOnlyPlatform& platform, const InstallerSession& session,
                               const InstallerOption& option, const Path& targetDrive) {
  std::vector<Path> present;
  for (const std::string& text : session.pendingExternalizeApps) {
    const Path app(text);
    if (isStillThere(platform, app) || AppInstallEngine::wasBrokenOff(platform, app, option, targetDrive))
      present.push_back(app);
  }
  // An application inside another one goes to the drive along with it.
  std::vector<Path> apps;
  std::copy_if(present.begin(), present.end(), std::back_inserter(apps),
               [&present](const Path& app) { return !isInsideAnyByText(app, present); });
  return apps;
}

InstallerSession updated(const InstallerSession& session, const std::vector<std::string>& results) {
  std::vector<std::string> actions = session.actions;
  actions.insert(actions.end(), results.begin(), results.end());
  if (std::any_of(results.begin(), results.end(), InstallAction::isExternalizeFailed))
    return session.with(InstallerSessionStatus::pendingExternalize, actions);
  return session.with(InstallerSessionStatus::done, actions, std::vector<std::string>{});
}

}  // namespace

InstallerSession ExternalizeFinalizer::finalize(Platform& platform, const InstallerSession& session,
                                                const InstallerOption& option, const Path& targetDrive,
                                                const InstallerRunReporter& reporter) {
  const Turn turn(platform, reporter.waiting);
  const std::vector<Path> apps = stillPending(platform, session, option, targetDrive);
  reporter.log(InstallAction::line("externalize-safe-apps", {std::to_string(apps.size())}));
  const InstallerSession result =
      updated(session, SafeAppExternalizer::externalize(platform, apps, option, targetDrive));
  SessionStore::save(platform, result, AppStorageNames::sessionRoot(platform.places));
  const bool isPartial = result.status == InstallerSessionStatus::pendingExternalize;
  reporter.log(InstallAction::line(isPartial ? "session-partial" : "session-finalized", {result.id}));
  return result;
}

InstallerSession ResumeCoordinator::resume(Platform& platform, const std::string& sessionID,
                                           const InstallerRunReporter& reporter) {
  // Taken first: another run may be finishing the same session.
  const Turn turn(platform, reporter.waiting);
  const auto session = SessionStore::find(platform, sessionID, AppStorageNames::sessionRoot(platform.places));
  if (!session) throw PlatformError(errorDomain, noSession, "No session with id " + sessionID);
  if (session->status != InstallerSessionStatus::pendingExternalize) {
    reporter.log(InstallAction::line("resume-noop", {session->id, std::string(rawValue(session->status))}));
    return *session;
  }
  const auto option = InstallerOptionLoader::find(platform, session->optionID);
  if (!option) throw PlatformError(errorDomain, unknownOption, "Unknown option id " + session->optionID);
  return ExternalizeFinalizer::finalize(platform, *session, *option, Path(session->targetDrivePath),
                                        reporter);
}

std::vector<InstallerSession> PendingSessionsLookup::all(const ReadOnlyPlatform& platform) {
  auto sessions = SessionStore::list(platform, AppStorageNames::sessionRoot(platform.places));
  std::erase_if(sessions, [](const InstallerSession& session) {
    return session.status != InstallerSessionStatus::pendingExternalize;
  });
  return sessions;
}

}  // namespace quarn
