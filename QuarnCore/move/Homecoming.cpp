#include "QuarnCore/move/Homecoming.h"

#include "Platform/PathText.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/move/ItemMover.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn::Homecoming {
namespace {

/// What can't be moved to where the link stands, or must not be: found out only afterwards, the link would be
/// gone, and a link or a launcher that a stranger made could carry off the home.
void requireApart(const ReadOnlyPlatform& platform, const Path& place, const Path& target) {
  const Sighting at = sightItself(platform.files, place);
  const Sighting leadsTo = sight(platform.files, target);
  if (at.isAtOrIn(leadsTo) || leadsTo.isAtOrIn(at) || MountPoints::contains(platform, target))
    throw MoverError::verifyFailed(place.lastComponent() + " leads to a volume or to a folder around itself");
  const ProtectedPlaces places(platform);
  // A protected place that was moved away as a whole comes home to itself.
  if (!places.isOneOrAroundOne(at) && places.isOneOrAroundOne(leadsTo))
    throw MoveRefused(place.lastComponent() +
                      " leads to a folder that belongs where it is: " + target.text());
}

/// What a link leads to; it must be there, or the way back would end with nothing at all.
Path linkTarget(const ReadOnlyPlatform& platform, const Path& link) {
  const std::string text = platform.files.readSymbolicLink(link).orThrow();
  const Path target = platform.files.standardized(PathText::fileURL(platform.places, text));
  if (!platform.files.exists(target)) throw MoverError::sourceMissing();
  return target;
}

/// Where a launcher leads; nothing if the place holds none. A link is a link, whatever the bundle that it
/// leads to holds.
std::optional<Path> launcherTarget(const ReadOnlyPlatform& platform, const Path& place) {
  if (platform.files.isSymbolicLink(place)) return std::nullopt;
  return AppScanner::launcherShimTarget(platform, place);
}

/// What stands in a launcher was perhaps written by a stranger.
void requireApplication(const ReadOnlyPlatform& platform, const Path& target) {
  if (target.extension() == "app" && platform.files.isFolder(target)) return;
  throw MoveRefused("A launcher must lead to an application: " + target.text());
}

void requireRemovable(const ReadOnlyPlatform& platform, const Path& launcher) {
  const auto obstacles = Obstacles::find(platform, launcher);
  if (obstacles.toRemoval) throw PlatformError(*obstacles.toRemoval);
}

/// A launcher under a hidden name beside its place. Nothing of it is removed before the application is home,
/// so whatever ends the run on the way leaves the launcher whole.
class LauncherAside {
 public:
  LauncherAside(Platform& platform, const Path& launcher)
      : platform_(platform),
        place_(launcher),
        aside_(launcher.parent().appending(".quarn-launcher-" + UUID::make().substr(0, 8))) {
    platform_.files.rename(place_, aside_).orThrow();
  }

  /// Replaces nothing that has come to its place.
  void putBack() { platform_.files.rename(aside_, place_).orIgnore(); }
  void discard() {
    if (!platform_.files.remove(aside_)) MoverStasher::stash(platform_, aside_);
  }

 private:
  Platform& platform_;
  Path place_;
  Path aside_;
};

void replaceLauncher(Platform& platform, const Path& launcher, const Path& target) {
  requireRemovable(platform, launcher);
  LauncherAside aside(platform, launcher);
  try {
    ItemMover::move(platform, target, launcher);
  } catch (...) {
    aside.putBack();
    throw;
  }
  aside.discard();
}

}  // namespace

void bringHome(Platform& platform, const Path& place) {
  const auto ofLauncher = launcherTarget(platform, place);
  const Path target = ofLauncher ? *ofLauncher : linkTarget(platform, place);
  requireApart(platform, place, target);
  if (ofLauncher) requireApplication(platform, target);
  ItemMover::requireMovable(platform, target, place.parent());
  if (ofLauncher) return replaceLauncher(platform, place, target);
  platform.files.removeSymbolicLink(place).orThrow();
  ItemMover::move(platform, target, place);
}

}  // namespace quarn::Homecoming
