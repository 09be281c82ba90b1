#include "QuarnCore/move/Homecoming.h"

#include "Platform/PathText.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/launchers/LauncherBundle.h"
#include "QuarnCore/move/ItemMover.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn::Homecoming {
namespace {

/// Refuses targets that can't or must not be moved to where the link is. If the move itself found this out,
/// the link would be gone already. And a link or a launcher made by a stranger could otherwise carry off the
/// home folder.
void requireApart(const ReadOnlyPlatform& platform, const Path& place, const Path& target) {
  const Sighting at = sightItself(platform.files, place).orThrow();
  const Sighting leadsTo = sight(platform.files, target).orThrow();
  if (at.isAtOrIn(leadsTo) || leadsTo.isAtOrIn(at) || MountPoints::contains(platform, target))
    throw MoverError::verifyFailed(place.lastComponent() + " leads to a volume or to a folder around itself");
  const ProtectedPlaces places(platform);
  // A protected folder that was moved away as a whole comes back to its own path.
  if (!places.isOneOrAroundOne(at) && places.isOneOrAroundOne(leadsTo))
    throw MoveRefused(place.lastComponent() +
                      " leads to a folder that belongs where it is: " + target.text());
}

/// Returns the target of a link. The target must exist, or the link would be removed with nothing to replace
/// it.
Path linkTarget(const ReadOnlyPlatform& platform, const Path& link) {
  const std::string text = platform.files.readSymbolicLink(link).orThrow();
  const Path target = platform.files.standardized(PathText::fileURL(platform.places, text));
  if (platform.files.exists(target)) return target;
  sight(platform.files, target).orThrow();
  throw MoverError::sourceMissing();
}

/// Returns the target of a launcher, or nothing if the item isn't a launcher. A link is never a launcher,
/// whatever bundle it leads to.
std::optional<Path> launcherTarget(const ReadOnlyPlatform& platform, const Path& place) {
  if (platform.files.isSymbolicLink(place)) return std::nullopt;
  return AppScanner::launcherShimTarget(platform, place);
}

/// Refuses a launcher that leads to anything but an application: its content may have been written by a
/// stranger.
void requireApplication(const ReadOnlyPlatform& platform, const Path& target) {
  if (target.extension() == "app" && platform.files.isFolder(target)) return;
  throw MoveRefused("A launcher must lead to an application: " + target.text());
}

void requireRemovable(const ReadOnlyPlatform& platform, const Path& launcher) {
  const auto obstacles = Obstacles::find(platform, launcher);
  if (obstacles.toRemoval) throw PlatformError(*obstacles.toRemoval);
}

/// A launcher that is renamed to a hidden name in its folder. Nothing of it is removed before the application
/// is back, so the launcher stays complete however the run ends.
class LauncherAside {
 public:
  LauncherAside(Platform& platform, const Path& launcher)
      : platform_(platform),
        place_(launcher),
        aside_(launcher.parent().appending(".quarn-launcher-" + UUID::make().substr(0, 8))) {
    platform_.files.rename(place_, aside_).orThrow();
  }

  /// Renames the launcher back. Replaces nothing that has appeared there meanwhile.
  void putBack() { platform_.files.rename(aside_, place_).orIgnore(); }
  void discard() {
    // Somebody may have taken the launcher for the application, and installed a new version into it.
    const bool isOurs = LauncherBundle::isAllThatIsIn(platform_, aside_);
    // By now the application is back, so a launcher that can't be removed must not fail the run.
    if (!isOurs || !platform_.files.remove(aside_)) MoverStasher::stash(platform_, aside_);
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
  // All checks come before this line: from here on the disk changes.
  ItemMover::requireMovable(platform, target, place.parent());
  if (ofLauncher) return replaceLauncher(platform, place, target);
  platform.files.removeSymbolicLink(place).orThrow();
  ItemMover::move(platform, target, place);
}

}  // namespace quarn::Homecoming
