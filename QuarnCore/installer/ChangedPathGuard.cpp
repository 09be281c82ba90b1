#include "QuarnCore/installer/ChangedPathGuard.h"

#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/installer/AppsFolder.h"
#include "QuarnCore/installer/InstallerOptionLoader.h"
#include "QuarnCore/installer/Snapshotter.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/move/MountPoints.h"

namespace quarn {
namespace {

/// The option may be gone since; then it had the usual name.
std::string externalRootName(const ReadOnlyPlatform& platform, const InstallerSession& session) {
  const auto option = InstallerOptionLoader::find(platform, session.optionID);
  return option ? option->externalRootName : std::string(AppStorageNames::externalRoot);
}

bool isWhole(const Path& path) {
  return path.isAbsolute() && !path.holdsNul() && path.simplified() == path;
}

}  // namespace

ChangedPathGuard::ChangedPathGuard(const ReadOnlyPlatform& platform, const InstallerSession& session)
    : platform_(platform), protected_(platform) {
  std::vector<Path> roots = Snapshotter::defaultRoots(platform.places);
  const Path drive(session.targetDrivePath);
  const Path apps = AppsFolder::on(drive, externalRootName(platform, session));
  if (isWhole(apps) && ChosenVolume::holding(platform, drive) && AppsFolder::isOn(platform, apps, drive))
    roots.push_back(apps);
  for (const Path& root : roots) folders_.push_back(sight(platform.files, root).leadsTo);
}

bool ChangedPathGuard::allows(const Path& path) const {
  if (!isWhole(path)) return false;
  const Sighting item = sightItself(platform_.files, path);
  if (item.failure) return false;
  if (protected_.isOneOrAroundOne(item) || protected_.isRecordOrBackup(item)) return false;
  const bool isBrought = isInsideAnyByText(item.leadsTo, folders_) ||
                         (!item.isLink && LauncherShim::recordedTarget(platform_, path));
  return isBrought && MountPoints::areNoneInside(platform_, path);
}

}  // namespace quarn
