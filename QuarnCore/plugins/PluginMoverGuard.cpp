#include "QuarnCore/plugins/PluginMoverGuard.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/plugins/PluginContents.h"
#include "QuarnCore/plugins/PluginFolders.h"
#include "QuarnCore/plugins/PluginReplacement.h"
#include "QuarnCore/plugins/PluginTools.h"

namespace quarn::PluginMoverGuard {
namespace {

using Kind = PluginInstallStatus::Kind;
using PluginContents::quoted;

Path systemPath(const InstalledPlugin& plugin) {
  return Path(plugin.systemPath);
}

/// The records may be older than what others did meanwhile, and may be anybody's.
void requireAsRecorded(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin) {
  const Path place = systemPath(plugin);
  if (!PluginFolders::hold(place) || place.lastComponent() != plugin.name)
    throw MoveRefused(quoted(systemPath(plugin)) + " isn’t in a folder of plug-ins.");
  const bool isLink = platform.files.attributes(place).orThrow().kind == FileKind::symbolicLink;
  const bool wasLink = plugin.status.kind != Kind::native;
  if (isLink == wasLink &&
      (!isLink || platform.files.readSymbolicLink(place).valueOr("") == plugin.status.target))
    return;
  throw MoveRefused(quoted(systemPath(plugin)) + " was replaced meanwhile.");
}

void requireReplaceable(const ReadOnlyPlatform& platform, const PluginPlaces& places) {
  PluginReplacement::requirePossible(platform, places);
  if (platform.files.isSymbolicLink(places.external)) return;
  if (PluginFolders::mayLeadTo(platform, places.external, places.link))
    throw MoveRefused("Another link leads to the copy on the drive: " + places.external.text());
}

void requireBundle(const ReadOnlyPlatform& platform, const Path& target, const std::string& name) {
  if (!target.isAbsolute())
    throw MoveRefused(quoted(Path(name)) + " is a link with a relative path: " + target.text());
  if (platform.files.isSymbolicLink(target))
    throw MoveRefused(quoted(Path(name)) + " leads to another link: " + target.text());
  if (!PluginFormats::of(target) || !platform.files.isFolder(target))
    throw MoveRefused(quoted(Path(name)) + " doesn’t lead to a plug-in: " + target.text());
}

void requireApart(const ReadOnlyPlatform& platform, const Path& place, const Path& target) {
  const Sighting at = sightItself(platform.files, place), leadsTo = sight(platform.files, target);
  const Sighting home = sight(platform.files, platform.places.home());
  if (!at.isAtOrIn(leadsTo) && !leadsTo.isAtOrIn(at) && !home.isAtOrIn(leadsTo)) return;
  throw MoveRefused(quoted(Path(place.lastComponent())) +
                    " leads to a folder that belongs where it is: " + target.text());
}

/// Without this the link would go, and the copy could not be made.
void requireWritable(const ReadOnlyPlatform& platform, const Path& place) {
  if (platform.files.obstacleToRemoval(place))
    throw MoveRefused("You may not change " + quoted(place.parent()) + ", where " +
                      quoted(Path(place.lastComponent())) + " would be copied to.");
}

/// Returns whether this is where the drive that holds the path holds a plug-in of this name.
bool isOwnPlace(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin, const Path& resolved) {
  const Path drive = MountPoints::holding(platform, resolved);
  return Text::equal(PluginFormats::externalizedPath(plugin.format, plugin.name, drive).text(),
                     resolved.text());
}

}  // namespace

void requireMovable(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin,
                    const PluginPlaces& places, const Path& drive) {
  requireAsRecorded(platform, plugin);
  // The text of the link would lead elsewhere.
  if (!drive.isAbsolute()) throw MoveRefused("The path of the drive isn’t absolute: " + drive.text());
  PluginGuard::requireApart(platform, places, drive);
  PluginContents::requireCopyable(platform, places.source);
  if (PluginTools::isAnythingAt(platform, places.external)) requireReplaceable(platform, places);
}

ChosenVolume requireRestorable(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin) {
  requireAsRecorded(platform, plugin);
  const Path place = systemPath(plugin), target(plugin.status.target);
  const auto volume = ChosenVolume::requiredFor(platform, target);
  requireBundle(platform, target, plugin.name);
  requireApart(platform, place, target);
  MountPoints::refuseInside(platform, target);
  PluginContents::requireCopyable(platform, target);
  requireWritable(platform, place);
  PluginReplacement::requirePossible(platform, {.source = target, .external = place, .link = place});
  return volume;
}

void requireRemovable(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin) {
  requireAsRecorded(platform, plugin);
  const Path place = systemPath(plugin);
  MountPoints::refuseInside(platform, place);
  // The system's folder may itself be a link to the drive.
  const Path itself = sightItself(platform.files, place).leadsTo;
  if (plugin.status.kind == Kind::native && isOwnPlace(platform, plugin, itself))
    throw MoveRefused(quoted(systemPath(plugin)) + " is the copy on the drive: " + itself.text());
}

bool isOwnCopy(const ReadOnlyPlatform& platform, const InstalledPlugin& plugin) {
  const Path target(plugin.status.target);
  const auto attributes = platform.files.attributes(target);
  const Sighting copy = sight(platform.files, target);
  return attributes && attributes->kind == FileKind::folder && target.isAbsolute() &&
         Text::equal(target.text(), copy.leadsTo.text()) && isOwnPlace(platform, plugin, copy.leadsTo) &&
         !PluginFolders::mayLeadTo(platform, target, systemPath(plugin)) &&
         MountPoints::areNoneInside(platform, target);
}

}  // namespace quarn::PluginMoverGuard
