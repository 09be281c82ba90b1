#include "QuarnCore/discovery/ExternalAppsRootsDiscovery.h"

#include "QuarnCore/foundation/AppStorageNames.h"

namespace quarn::ExternalAppsRootsDiscovery {

std::vector<Path> roots(const ReadOnlyPlatform& platform, const std::vector<Path>& extra) {
  const Path volumes("/Volumes");
  std::vector<Path> found;
  for (const std::string& name : platform.files.list(volumes, Hidden::skipped).valueOr({})) {
    const Path apps = AppStorageNames::appsRoot(volumes.appending(name));
    if (platform.files.exists(apps)) found.push_back(apps);
  }
  for (const Path& folder : extra) {
    if (platform.files.exists(folder)) found.push_back(folder);
  }
  return found;
}

}  // namespace quarn::ExternalAppsRootsDiscovery
