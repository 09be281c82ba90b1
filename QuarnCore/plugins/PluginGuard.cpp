#include "QuarnCore/plugins/PluginGuard.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/installer/AppsFolder.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/plugins/PluginContents.h"
#include "QuarnCore/plugins/PluginTools.h"

namespace quarn::PluginGuard {
namespace {

bool isSame(const Sighting& one, const Sighting& other) {
  if (Text::equal(one.leadsTo.text(), other.leadsTo.text())) return true;
  return one.exists && other.exists && !one.identities.empty() && !other.identities.empty() &&
         one.identities.front() == other.identities.front();
}

void requireOutside(const Sighting& item, const Sighting& folder) {
  if (item.isAtOrIn(folder))
    throw MoveRefused(PluginContents::quoted(item.spelled) + " lies in " +
                      PluginContents::quoted(folder.spelled) + ".");
}

void requireFolder(const ReadOnlyPlatform& platform, const Path& source) {
  if (platform.files.isFolder(source)) return;
  throw MoveRefused("The plug-in is no longer there: " + source.text());
}

void requireOnDrive(const ReadOnlyPlatform& platform, const Path& external, const Path& drive) {
  if (AppsFolder::isOn(platform, external.parent(), drive)) return;
  throw MoveRefused("The folder for plug-ins isn’t on the drive: " +
                    sight(platform.files, external.parent()).leadsTo.text());
}

/// The system's folder of plug-ins may itself be a link to the drive.
void requireTwoPlaces(const Sighting& external, const Sighting& link) {
  if (isSame(external, link))
    throw MoveRefused(PluginContents::quoted(external.spelled) + " and " +
                      PluginContents::quoted(link.spelled) + " are the same place.");
  requireOutside(external, link);
  requireOutside(link, external);
}

/// What the source leads to counts, and where it stands itself: a link that goes is no source any more.
void requireNotExternal(const ReadOnlyPlatform& platform, const Path& source, const Sighting& external) {
  const Sighting bundle = sight(platform.files, source);
  if (isSame(bundle, external))
    throw MoveRefused("The plug-in is on the drive already: " + external.spelled.text());
  requireOutside(bundle, external);
  requireOutside(sightItself(platform.files, source), external);
  requireOutside(external, bundle);
}

void requireNotAroundLink(const ReadOnlyPlatform& platform, const Path& source, const Sighting& link) {
  const Sighting bundle = sight(platform.files, source);
  const Sighting itself = sightItself(platform.files, source);
  if (isSame(bundle, link) || isSame(itself, link)) return;
  requireOutside(bundle, link);
  requireOutside(itself, link);
  requireOutside(link, bundle);
}

void requireNoVolumeInside(const ReadOnlyPlatform& platform, const PluginPlaces& places) {
  MountPoints::refuseInside(platform, platform.files.resolvingLinks(places.source));
  MountPoints::refuseInside(platform, places.external);
  MountPoints::refuseInside(platform, places.link);
}

bool isFolderItself(const ReadOnlyPlatform& platform, const Path& place) {
  return PluginTools::isAnythingAt(platform, place) &&
         platform.files.attributes(place).orThrow().kind == FileKind::folder;
}

/// Returns the identity of the folder that a path leads to.
FileIdentity folderAt(const ReadOnlyPlatform& platform, const Path& place) {
  return platform.files.attributes(place.appending(".")).orThrow().identity;
}

}  // namespace

void requireApart(const ReadOnlyPlatform& platform, const PluginPlaces& places, const Path& drive) {
  requireFolder(platform, places.source);
  requireOnDrive(platform, places.external, drive);
  const Sighting external = sightItself(platform.files, places.external);
  const Sighting link = sightItself(platform.files, places.link);
  requireTwoPlaces(external, link);
  requireNotExternal(platform, places.source, external);
  requireNotAroundLink(platform, places.source, link);
  requireNoVolumeInside(platform, places);
}

void requireOutlives(const ReadOnlyPlatform& platform, const Path& kept, const Path& gone) {
  if (!isFolderItself(platform, gone)) return;
  const FileIdentity identity = folderAt(platform, gone);
  // The system resolves the path anew for each step up, with the links as they are now.
  std::optional<FileIdentity> below;
  for (Path folder = kept.appending(".");; folder = folder.appending("..")) {
    const FileIdentity around = platform.files.attributes(folder).orThrow().identity;
    if (around == identity)
      throw MoveRefused(PluginContents::quoted(kept) + " lies in " + PluginContents::quoted(gone) + ".");
    if (around == below) return;
    below = around;
  }
}

bool isSourceAtLink(const ReadOnlyPlatform& platform, const PluginPlaces& places) {
  return isFolderItself(platform, places.link) &&
         folderAt(platform, places.source) == folderAt(platform, places.link);
}

}  // namespace quarn::PluginGuard
