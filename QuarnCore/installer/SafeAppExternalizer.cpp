#include "QuarnCore/installer/SafeAppExternalizer.h"

#include "Platform/CocoaError.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/installer/AppInstallEngine.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::SafeAppExternalizer {
namespace {

bool isBelowApplications(const std::string& path) {
  return path.starts_with("/Applications/") && path.ends_with(".app");
}

/// What can't be looked into may be anything.
bool mayBeLauncher(const ReadOnlyPlatform& platform, const Path& app) {
  const auto record = platform.files.attributes(LauncherShim::targetFile(app));
  return record || !CocoaError::saysMissing(record.error());
}

bool isSafe(const ReadOnlyPlatform& platform, const Path& app) {
  if (platform.files.isSymbolicLink(app) || !platform.files.isFolder(app) || mayBeLauncher(platform, app))
    return false;
  const auto entry = AppScanner::metadataEntry(platform, app);
  return entry && !entry->isMacAppStore && !entry->hasSystemExtension && !entry->hasLoginItems;
}

void requireInPlace(const ReadOnlyPlatform& platform, const Path& app) {
  const Path place = sightItself(platform.files, app).leadsTo;
  if (place != app || !isBelowApplications(app.text()))
    throw MoveRefused("“" + app.text() + "” isn’t an application in /Applications.");
}

std::string externalized(Platform& platform, const Path& app, const InstallerOption& option,
                         const Path& targetDrive) {
  try {
    requireInPlace(platform, app);
    const bool wasBrokenOff = AppInstallEngine::wasBrokenOff(platform, app, option, targetDrive);
    const Path source = wasBrokenOff ? AppInstallEngine::destination(app, option, targetDrive) : app;
    return AppInstallEngine::install(platform, source, option, targetDrive, InstallerRunReporter::silent());
  } catch (const LocalizedError& error) {
    return InstallAction::externalizeFailed(app, error);
  }
}

}  // namespace

std::vector<Path> newApplications(const ReadOnlyPlatform& platform, const FileSnapshot& before,
                                  const FileSnapshot& after) {
  std::vector<Path> apps, staying;
  // Sorted, so what encloses an application comes before it.
  for (const std::string& added : Snapshotter::added(before, after)) {
    const Path app(added);
    if (!isBelowApplications(added) || isInsideAnyByText(app, staying)) continue;
    (isSafe(platform, app) ? apps : staying).push_back(app);
  }
  return apps;
}

std::vector<std::string> externalize(Platform& platform, const std::vector<Path>& apps,
                                     const InstallerOption& option, const Path& targetDrive) {
  std::vector<std::string> results;
  for (const Path& app : apps) results.push_back(externalized(platform, app, option, targetDrive));
  return results;
}

}  // namespace quarn::SafeAppExternalizer
