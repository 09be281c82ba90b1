#include "QuarnCore/dedupe/AppDedupeGuard.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "Platform/Text.h"
#include "QuarnCore/dedupe/AppDedupeRules.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::AppDedupeGuard {
namespace {

std::string named(const Path& item) {
  return "“" + item.lastComponent() + "”";
}

/// Fails unless the error says for certain that nothing is there.
void requireMissing(const PlatformError& error, const Path& launcher) {
  if (!CocoaError::saysMissing(error))
    throw MoveRefused("The application that " + named(launcher) + " opens can’t be looked for.");
}

/// A file that exists but can't be read may name another application.
void requireTargetWasRead(const ReadOnlyPlatform& platform, const Path& launcher) {
  const Path file = LauncherShim::targetFile(launcher);
  if (platform.files.read(file)) return;
  const auto attributes = platform.files.attributes(file);
  const bool isUnknown =
      attributes ? attributes->kind == FileKind::regular : !CocoaError::saysMissing(attributes.error());
  if (isUnknown) throw MoveRefused("What " + named(launcher) + " opens can’t be read.");
}

/// What can't be looked at may exist: in a folder that may not be searched, or on a disk that fails just now.
void requireTargetIsMissing(const ReadOnlyPlatform& platform, const Path& launcher, const Path& target) {
  if (target.holdsNul()) return;
  const auto attributes = platform.files.attributes(target);
  if (!attributes) return requireMissing(attributes.error(), launcher);
  // A link that leads nowhere. Why it can't be followed is told by the error of a path through it.
  const auto behind = platform.files.attributes(target.appending("Contents"));
  if (!behind) requireMissing(behind.error(), launcher);
}

void requireDuplicate(const ReadOnlyPlatform& platform, const Path& launcher, const AppDedupeItem& keep) {
  const auto now = AppDedupeRules::describe(platform, launcher);
  if (!now || now->kind != AppDedupeItemKind::quarnLauncher)
    throw MoveRefused(named(launcher) + " isn’t a launcher any more.");
  const auto stays = AppDedupeRules::describe(platform, Path(keep.path));
  if (!stays || !AppDedupeRules::canReplaceLaunchers(*stays) ||
      !Text::equal(now->effectiveBundleIdentifier, stays->effectiveBundleIdentifier))
    throw MoveRefused("The application that was to stay isn’t at " + keep.path + " any more.");
  if (!AppDedupeRules::isDuplicate(platform, *now, *stays))
    throw MoveRefused(named(launcher) + " isn’t a duplicate any more.");
  requireTargetWasRead(platform, launcher);
  if (now->targetPath && !Text::equal(*now->targetPath, stays->path))
    requireTargetIsMissing(platform, launcher, Path(*now->targetPath));
}

/// Two names that differ in their Unicode form alone can be two bundles, so bytes and identities are
/// compared.
bool isSameOrInside(const Sighting& item, const Sighting& bundle) {
  const std::string& place = item.leadsTo.text();
  if (place == bundle.leadsTo.text() || place.starts_with(bundle.leadsTo.text() + "/")) return true;
  return bundle.identities.empty() || std::find(item.identities.begin(), item.identities.end(),
                                                bundle.identities.front()) != item.identities.end();
}

void requireOwnPlace(const ReadOnlyPlatform& platform, const Path& launcher, const Path& keep) {
  const Sighting item = sight(platform.files, launcher).orThrow();
  const Sighting stays = sight(platform.files, keep).orThrow();
  if (isSameOrInside(item, stays) || isSameOrInside(stays, item))
    throw MoveRefused(named(launcher) + " belongs to the application that stays.");
  const ProtectedPlaces places(platform);
  if (places.isOneOrAroundOne(item) || places.isInOwnFolder(item))
    throw MoveRefused(named(launcher) + " belongs where it is.");
  MountPoints::refuseInside(platform, launcher);
}

}  // namespace

void requireRemovable(const ReadOnlyPlatform& platform, const AppDedupeItem& item,
                      const AppDedupeItem& keep) {
  const Path launcher(item.path);
  platform.files.attributes(launcher).orThrow();
  requireDuplicate(platform, launcher, keep);
  requireOwnPlace(platform, launcher, Path(keep.path));
}

}  // namespace quarn::AppDedupeGuard
