#include "QuarnCore/discovery/DataLocator.h"

#include <set>

#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCore/discovery/AssociatedDataPaths.h"
#include "QuarnCore/discovery/InstallsDB.h"

namespace quarn::DataLocator {
namespace {

/// Removes paths that can't be an application's data. This matters because others write these paths: they
/// come from rows of the ledger or from the property list of a bundle. What lies in a folder of this tool has
/// been moved already.
std::vector<Path> dataAmong(const ReadOnlyPlatform& platform, const ProtectedPlaces& places,
                            const std::vector<Path>& paths, const Path& bundlePath) {
  if (paths.empty()) return {};
  const Sighting bundle = sight(platform.files, bundlePath);
  if (bundle.failure) return {};
  std::vector<Path> data;
  for (const Path& path : paths) {
    const Sighting item = sight(platform.files, path);
    if (item.failure || item.isAtOrIn(bundle) || bundle.isAtOrIn(item)) continue;
    if (!places.isOneOrAroundOne(item) && !places.isInOwnFolder(item)) data.push_back(path);
  }
  return data;
}

std::vector<Path> trackedDataPaths(const ReadOnlyPlatform& platform, const AppIdentity& identity) {
  const Path database = InstallsDB::defaultPath(platform.places);
  if (!InstallsDB::isAvailable(platform, database)) return {};
  const auto entry = identity.bundleIdentifier
                         ? InstallsDB::entryForBundleId(platform, *identity.bundleIdentifier, database)
                         : InstallsDB::entryForAppName(platform, identity.displayName, database);
  if (!entry) return {};
  std::vector<Path> paths;
  for (const std::string& file : InstallsDB::trackedFiles(platform, entry->installId, database)) {
    if (platform.files.exists(Path(file))) paths.push_back(PathText::fileURL(platform.places, file));
  }
  return paths;
}

std::vector<Path> firstOfEach(const ReadOnlyPlatform& platform, const std::vector<Path>& paths) {
  std::set<std::string> seen;
  std::vector<Path> kept;
  for (const Path& path : paths) {
    if (seen.insert(Text::canonical(platform.files.standardized(path).text())).second) kept.push_back(path);
  }
  return kept;
}

}  // namespace

std::vector<Path> locate(const ReadOnlyPlatform& platform, const ProtectedPlaces& places,
                         const AppIdentity& identity) {
  const Path bundle(identity.bundlePath);
  const auto associated =
      dataAmong(platform, places, AssociatedDataPaths::locate(platform, identity), bundle);
  auto paths = dataAmong(platform, places, trackedDataPaths(platform, identity), bundle);
  if (paths.empty()) return associated;
  paths.insert(paths.end(), associated.begin(), associated.end());
  return firstOfEach(platform, paths);
}

std::vector<Path> locate(const ReadOnlyPlatform& platform, const std::optional<std::string>& bundleId,
                         const std::string& appName, const Path& bundlePath,
                         const std::optional<std::string>& executableName) {
  return locate(platform, ProtectedPlaces(platform), {bundlePath.text(), appName, bundleId, executableName});
}

}  // namespace quarn::DataLocator
