#include "QuarnCore/health/HealthRepairGuard.h"

#include <algorithm>

#include "Platform/CocoaError.h"
#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/health/SymlinkScanning.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MovePlanner.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::HealthRepairGuard {
namespace {

std::string quoted(const std::string& text) {
  return "“" + text + "”";
}

MoveRefused hasChanged(const Path& item) {
  return MoveRefused(quoted(item.text()) + " has changed since it was looked at.");
}

MoveRefused belongsThere(const Path& item) {
  return MoveRefused(quoted(item.lastComponent()) + " belongs where it is.");
}

MoveRefused isInUse(const Path& copy) {
  return MoveRefused(quoted(copy.text()) + " is in use: a link leads there.");
}

bool isFolderForMovedItems(const std::string& name) {
  const auto& former = AppStorageNames::legacyExternalRoots;
  return name == AppStorageNames::externalRoot ||
         std::find(former.begin(), former.end(), name) != former.end();
}

/// Returns "/Volumes/<name>/<folder>" if a path lies below it.
std::optional<Path> folderAtTopOfDrive(const Path& path) {
  const std::string_view volumes = "/Volumes/", text = path.text();
  if (!text.starts_with(volumes)) return std::nullopt;
  const auto afterName = text.find('/', volumes.size());
  if (afterName == std::string_view::npos) return std::nullopt;
  const auto afterFolder = text.find('/', afterName + 1);
  if (afterFolder == std::string_view::npos) return std::nullopt;
  return Path(text.substr(0, afterFolder));
}

/// Returns whether a move takes things from there: applications, and data in a library or under a hidden name
/// at home.
bool isPlaceOfApplications(const ReadOnlyPlatform& platform, const Path& item) {
  const Path home = platform.files.standardized(platform.places.home());
  if (item.parent() == home) return item.lastComponent().starts_with(".");
  const Path roots[] = {Path("/Applications"), Path("/Library"), home.appending("Applications"),
                        home.appending("Library")};
  return std::any_of(std::begin(roots), std::end(roots),
                     [&](const Path& root) { return item != root && isAtOrInByText(item, root); });
}

/// Looks at the item itself: a link to it elsewhere would be followed to somebody else's.
void requirePlaceOfApplications(const ReadOnlyPlatform& platform, const Path& location) {
  const ProtectedPlaces places(platform);
  const Sighting sighting = sight(platform.files, location).orThrow();
  if (places.isOneOrAroundOne(sighting) || places.isInOwnFolder(sighting)) throw belongsThere(location);
  const Sighting around = sight(platform.files, location.parent()).orThrow();
  if (!location.isAbsolute() || around.leadsTo != around.spelled ||
      !isPlaceOfApplications(platform, sighting.spelled))
    throw MoveRefused(quoted(location.text()) +
                      " isn’t a place that applications or their data are moved from.");
}

bool isHealthyElsewhere(const ReadOnlyPlatform& platform, const HealthReport& report, const Sighting& copy) {
  return std::any_of(report.issues.begin(), report.issues.end(), [&](const HealthIssue& issue) {
    if (issue.kind != HealthIssue::Kind::healthy || !issue.target) return false;
    const Sighting used = sight(platform.files, *issue.target).orThrow();
    return copy.isAtOrIn(used) || used.isAtOrIn(copy);
  });
}

void requireOwnCopy(const ReadOnlyPlatform& platform, const HealthReport& report, const Path& location,
                    const Path& target) {
  const Sighting copy = sight(platform.files, target).orThrow();
  if (!driveOf(platform, target))
    throw MoveRefused(quoted(target.text()) + " isn’t in the folder for moved items of a mounted drive.");
  if (target.lastComponent() != location.lastComponent())
    throw MoveRefused(quoted(target.text()) + " isn’t a copy of " + quoted(location.lastComponent()) + ".");
  if (isHealthyElsewhere(platform, report, copy)) throw isInUse(target);
}

/// The folder in which a check looks for links.
const Path applications("/Applications");

/// What stands in the folder for applications. Throws if one of the items can't be looked at: it may be a
/// link to what is about to go.
std::vector<std::pair<Path, FileKind>> itemsOfApplications(const ReadOnlyPlatform& platform) {
  auto names = platform.files.list(applications, Hidden::included);
  if (!names && CocoaError::saysMissing(names.error())) return {};
  std::vector<std::pair<Path, FileKind>> items;
  for (const std::string& name : std::move(names).orThrow()) {
    const Path item = applications.appending(name);
    items.emplace_back(item, platform.files.attributes(item).orThrow().kind);
  }
  return items;
}

/// Links of any name count, and those that lead there by way of another link.
void requireUnused(const ReadOnlyPlatform& platform, const Path& copy) {
  const Sighting sighting = sight(platform.files, copy).orThrow();
  for (const auto& [item, kind] : itemsOfApplications(platform)) {
    if (kind != FileKind::symbolicLink) continue;
    const auto text = platform.files.readSymbolicLink(item).orThrow();
    if (isAtOrInByText(PathText::linkTarget(item, text).simplified(), sighting.spelled) ||
        sight(platform.files, item).orThrow().isAtOrIn(sighting))
      throw isInUse(copy);
  }
}

/// A launcher that can't be read looks like any other application.
void requireNoLauncher(const ReadOnlyPlatform& platform, const Path& bundle) {
  const Path file = LauncherShim::targetFile(bundle);
  if (!sight(platform.files, file).orThrow().exists) return;
  if (!LauncherShim::targetText(platform.files.read(file).orThrow())) return;
  if (LauncherShim::target(platform, bundle)) throw hasChanged(bundle);
  throw MoveRefused(quoted(bundle.lastComponent()) + " is a launcher, and its application is gone.");
}

}  // namespace

std::optional<Path> driveOf(const ReadOnlyPlatform& platform, const Path& item) {
  if (!item.isAbsolute()) return std::nullopt;
  const Sighting folder = sight(platform.files, item.parent());
  if (folder.failure) return std::nullopt;
  const auto top = folderAtTopOfDrive(folder.leadsTo.appending(item.lastComponent()));
  if (!top || !isFolderForMovedItems(top->lastComponent()) || !MountPoints::contains(platform, top->parent()))
    return std::nullopt;
  return top->parent();
}

void requireTrashable(const ReadOnlyPlatform& platform, const Path& item) {
  const Sighting sighting = sight(platform.files, item).orThrow();
  const ProtectedPlaces places(platform);
  if (places.isOneOrAroundOne(sighting) || places.isRecordOrBackup(sighting)) throw belongsThere(item);
  if (platform.files.exists(item)) MountPoints::refuseInside(platform, item);
}

void requireBroken(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  if (!issue.target) return;
  const auto text = platform.files.readSymbolicLink(issue.location).orThrow();
  if (PathText::linkTarget(issue.location, text).simplified() != issue.target->simplified())
    throw hasChanged(issue.location);
  const Path programs = issue.target->appending("Contents/MacOS");
  for (const Path& item : {*issue.target, issue.target->appending("Contents/Info.plist"), programs})
    sight(platform.files, item).orThrow();
  if (platform.files.isFolder(programs))
    platform.files.list(platform.files.realPath(programs).orThrow(), Hidden::included).orThrow();
  if (SymlinkInspector::inspect(platform, issue.location, *issue.target).kind != issue.kind)
    throw hasChanged(*issue.target);
}

void requireStillOrphan(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  requireUnused(platform, issue.location);
  for (const auto& [item, kind] : itemsOfApplications(platform)) {
    if (Text::equal(item.lastComponent(), issue.location.lastComponent())) throw hasChanged(item);
  }
}

void requireStillReverted(const ReadOnlyPlatform& platform, const HealthIssue& issue) {
  const auto attributes = platform.files.attributes(issue.location);
  if (!attributes && !CocoaError::saysMissing(attributes.error())) throw attributes.error();
  if (!attributes || attributes->kind == FileKind::symbolicLink) throw hasChanged(issue.location);
  if (issue.target) requireUnused(platform, *issue.target);
}

void requirePlausible(const ReadOnlyPlatform& platform, const HealthReport& report,
                      const HealthIssue& issue) {
  requirePlaceOfApplications(platform, issue.location);
  requireNoLauncher(platform, issue.location);
  if (issue.target) requireOwnCopy(platform, report, issue.location, *issue.target);
}

void requireMovable(const ReadOnlyPlatform& platform, const Path& source) {
  MovePlanner::requireStillMovable(platform, source);
  if (source.extension() == "app" && RunningAppsDetector::isRunning(platform, source))
    throw MoverError::appIsRunning(source.lastComponent());
  MountPoints::refuseInside(platform, source);
}

void requirePreferencesFile(const ReadOnlyPlatform& platform, const Path& link) {
  const auto text = platform.files.readSymbolicLink(link).orThrow();
  const Path seenFromTheLink = PathText::linkTarget(link, text);
  const Sighting taken = sight(platform.files, PathText::fileURL(platform.places, text)).orThrow();
  // What is missing is told by the way back itself.
  if (!taken.exists) return;
  const auto attributes = platform.files.attributes(taken.leadsTo);
  const bool isFile =
      attributes && attributes->kind == FileKind::regular && taken.leadsTo.extension() == "plist";
  if (!isFile || ProtectedPlaces(platform).isRecordOrBackup(taken) ||
      sight(platform.files, seenFromTheLink).orThrow().leadsTo != taken.leadsTo)
    throw MoveRefused(quoted(link.lastComponent()) + " doesn’t lead to a preferences file.");
}

}  // namespace quarn::HealthRepairGuard
