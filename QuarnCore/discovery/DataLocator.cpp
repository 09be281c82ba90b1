#include "QuarnCore/discovery/DataLocator.h"

#include <set>

#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCore/discovery/AssociatedDataPaths.h"
#include "QuarnCore/discovery/InstallsDB.h"

namespace quarn::DataLocator {
namespace {

bool isBundleOrInside(const std::string& path, const std::string& bundle) {
  return Text::equal(path, bundle) || Text::hasPrefix(path, bundle + "/");
}

std::vector<Path> trackedDataPaths(Platform& platform, const AppIdentity& identity) {
  const Path database = InstallsDB::defaultPath(platform.places);
  if (!InstallsDB::isAvailable(platform, database)) return {};
  const auto entry = identity.bundleIdentifier
                         ? InstallsDB::entryForBundleId(platform, *identity.bundleIdentifier, database)
                         : InstallsDB::entryForAppName(platform, identity.displayName, database);
  if (!entry) return {};
  const std::string bundle = platform.files.standardized(Path(identity.bundlePath)).text();
  std::vector<Path> outside;
  for (const std::string& file : InstallsDB::trackedFiles(platform, entry->installId, database)) {
    if (isBundleOrInside(file, bundle) || !platform.files.exists(Path(file))) continue;
    outside.push_back(PathText::fileURL(platform.places, file));
  }
  return outside;
}

std::vector<Path> firstOfEach(Platform& platform, const std::vector<Path>& paths) {
  std::set<std::string> seen;
  std::vector<Path> kept;
  for (const Path& path : paths) {
    if (seen.insert(Text::canonical(platform.files.standardized(path).text())).second) kept.push_back(path);
  }
  return kept;
}

}  // namespace

std::vector<Path> locate(Platform& platform, const std::optional<std::string>& bundleId,
                         const std::string& appName, const Path& bundlePath,
                         const std::optional<std::string>& executableName) {
  const AppIdentity identity{bundlePath.text(), appName, bundleId, executableName};
  const std::vector<Path> associated = AssociatedDataPaths::locate(platform, identity);
  std::vector<Path> paths = trackedDataPaths(platform, identity);
  if (paths.empty()) return associated;
  paths.insert(paths.end(), associated.begin(), associated.end());
  return firstOfEach(platform, paths);
}

}  // namespace quarn::DataLocator
