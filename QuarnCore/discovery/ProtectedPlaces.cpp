#include "QuarnCore/discovery/ProtectedPlaces.h"

#include <algorithm>
#include <string_view>

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/foundation/AppStorageNames.h"

namespace quarn {
namespace {

using Paths = std::vector<Path>;
using Sightings = std::vector<Sighting>;

void append(Paths& list, const Paths& more) {
  list.insert(list.end(), more.begin(), more.end());
}

Paths backupsOn(const Path& drive) {
  return {drive.appending(AppStorageNames::backupsRoot)};
}

Paths ownFoldersOn(const Path& drive) {
  Paths folders = backupsOn(drive);
  folders.push_back(AppStorageNames::externalRootPath(drive));
  return folders;
}

/// Returns the drive itself and the folders that make up this tool's storage on it.
Paths placesOn(const Path& drive) {
  Paths places = ownFoldersOn(drive);
  places.push_back(drive);
  for (const auto name : {AppStorageNames::apps, AppStorageNames::data, AppStorageNames::folders,
                          AppStorageNames::installerCache}) {
    places.push_back(AppStorageNames::externalRootPath(drive).appending(name));
  }
  return places;
}

/// Returns the drive on the path, that is, its component directly below /Volumes; nothing for a path
/// elsewhere.
Paths driveByName(const Path& path) {
  constexpr std::string_view volumes = "/Volumes/";
  if (!path.text().starts_with(volumes)) return {};
  return {Path(std::string_view(path.text()).substr(0, path.text().find('/', volumes.size())))};
}

Sightings seen(const FileSystem& files, const Paths& paths) {
  Sightings sightings;
  for (const Path& path : paths) sightings.push_back(sight(files, path));
  return sightings;
}

bool isAroundAny(const Sighting& item, const Sightings& places) {
  return std::any_of(places.begin(), places.end(),
                     [&item](const Sighting& place) { return place.isAtOrIn(item); });
}

bool isInAny(const Sighting& item, const Sightings& folders) {
  return std::any_of(folders.begin(), folders.end(),
                     [&item](const Sighting& folder) { return item.isAtOrIn(folder); });
}

/// Returns what `onDrive` gives for the drive that the item's path names. The drive may be unmounted now, so
/// the places on it can't be looked at.
Sightings onNamedDrive(const Sighting& item, Paths (*onDrive)(const Path& drive)) {
  Sightings unseenPlaces;
  for (const Path& form : {item.spelled, item.leadsTo}) {
    for (const Path& drive : driveByName(form)) {
      for (const Path& place : onDrive(drive)) unseenPlaces.push_back(unseen(place));
    }
  }
  return unseenPlaces;
}

}  // namespace

ProtectedPlaces::ProtectedPlaces(const ReadOnlyPlatform& platform)
    : files_(platform.files), volumes_(platform.volumes) {
  Paths ownFolders = {AppStorageNames::supportRoot(platform.places)};
  Paths recordsAndBackups = ownFolders;
  Paths places = AppBundleScanRoots::standardApplicationRoots(platform, true);
  append(places, {platform.places.home(), ownFolders.front()});
  Paths drives = platform.volumes.mounted().valueOr({});
  drives.emplace_back("/");
  for (const Path& drive : drives) {
    append(places, placesOn(drive));
    append(ownFolders, ownFoldersOn(drive));
    append(recordsAndBackups, backupsOn(drive));
  }
  places_ = seen(files_, places);
  ownFolders_ = seen(files_, ownFolders);
  recordsAndBackups_ = seen(files_, recordsAndBackups);
}

bool ProtectedPlaces::isOneOrAroundOne(const Sighting& item) const {
  return isAroundAny(item, places_) || isAroundAny(item, onNamedDrive(item, placesOn));
}

bool ProtectedPlaces::isInOwnFolder(const Sighting& item) const {
  // A link lies where its folder is, whatever it leads to.
  const Sighting where = item.isLink ? sight(files_, item.spelled.parent()) : item;
  return isInAny(where, ownFolders_) || isInAny(where, onNamedDrive(where, ownFoldersOn));
}

/// The list of drives leaves out volumes that are hidden or mounted elsewhere. Such a volume can hold
/// backups, too.
bool ProtectedPlaces::isInBackups(const Path& resolved) const {
  for (Path folder = resolved; folder.parent() != folder; folder = folder.parent()) {
    if (folder.lastComponent() != AppStorageNames::backupsRoot) continue;
    const auto mountPoints = volumes_.mountPoints();
    if (!mountPoints || std::any_of(mountPoints->begin(), mountPoints->end(), [&](const Path& mountPoint) {
          return Text::equal(mountPoint.text(), folder.parent().text());
        }))
      return true;
  }
  return false;
}

bool ProtectedPlaces::isRecordOrBackup(const Sighting& item) const {
  return isInBackups(item.leadsTo) || isInAny(item, recordsAndBackups_) ||
         isInAny(item, onNamedDrive(item, backupsOn));
}

}  // namespace quarn
