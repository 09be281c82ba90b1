#include "QuarnCore/move/Homecoming.h"

#include "Platform/PathText.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/foundation/MoverStasher.h"
#include "QuarnCore/move/ItemMover.h"
#include "QuarnCore/move/MoverError.h"
#include "QuarnCore/move/Obstacles.h"

namespace quarn::Homecoming {
namespace {

std::string asFolder(const Path& path) {
  return path.text() == "/" ? "/" : path.text() + "/";
}

/// One lies inside the other, or is it, when links are resolved on the way to them.
bool overlap(Platform& platform, const Path& item, const Path& target) {
  const Path folder = platform.files.resolvingLinks(item.parent());
  const std::string at = asFolder(folder.appending(item.lastComponent()));
  const std::string leadsTo = asFolder(platform.files.resolvingLinks(target));
  return at.starts_with(leadsTo) || leadsTo.starts_with(at);
}

bool isVolume(Platform& platform, const Path& target) {
  const Path resolved = platform.files.resolvingLinks(target);
  for (const Path& volume : platform.volumes.mounted().valueOr({})) {
    if (platform.files.resolvingLinks(volume) == resolved) return true;
  }
  return false;
}

/// What can't be moved to where the link stands. Found out only afterwards, the link would be gone.
void requireApart(Platform& platform, const Path& place, const Path& target) {
  if (!overlap(platform, place, target) && !isVolume(platform, target)) return;
  throw MoverError::verifyFailed(place.lastComponent() + " leads to a volume or to a folder around itself");
}

/// What a link leads to; it must be there, or the way back would end with nothing at all.
Path linkTarget(Platform& platform, const Path& link) {
  const std::string text = platform.files.readLink(link).orThrow();
  const Path target = PathText::fileURL(platform.places, text);
  if (!platform.files.exists(target)) throw MoverError::sourceMissing();
  return target;
}

void requireRemovable(Platform& platform, const Path& launcher) {
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
  const auto ofLauncher = AppScanner::launcherShimTarget(platform, place);
  const Path target = ofLauncher ? *ofLauncher : linkTarget(platform, place);
  requireApart(platform, place, target);
  ItemMover::requireMovable(platform, target, place.parent());
  if (ofLauncher) return replaceLauncher(platform, place, target);
  platform.files.removeLink(place).orThrow();
  ItemMover::move(platform, target, place);
}

}  // namespace quarn::Homecoming
