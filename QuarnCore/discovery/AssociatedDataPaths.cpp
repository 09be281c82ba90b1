#include "QuarnCore/discovery/AssociatedDataPaths.h"

#include "Platform/Text.h"
#include "QuarnCore/discovery/LibraryDataPaths.h"
#include "QuarnCore/discovery/SlugDataPaths.h"
#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn {
namespace {

void append(std::vector<Path>& list, const std::vector<Path>& more) {
  list.insert(list.end(), more.begin(), more.end());
}

std::vector<Path> libraryPaths(const Path& home, const AppIdentity& identity, bool isSupplemental) {
  std::vector<Path> paths = LibraryDataPaths::byBundleId(home, identity.bundleIdentifier);
  append(paths, isSupplemental ? LibraryDataPaths::supplemental(home, identity.displayName)
                               : LibraryDataPaths::byDisplayName(home, identity.displayName));
  append(paths, LibraryDataPaths::systemByBundleId(identity.bundleIdentifier));
  // The support folder of such an application is the application itself, not its data.
  if (!isSupplemental) append(paths, LibraryDataPaths::systemByDisplayName(identity.displayName));
  return paths;
}

std::vector<Path> curatedPaths(const AppIdentity& identity) {
  std::vector<Path> paths;
  if (const auto curated = CuratedDomains::entry(identity.bundleIdentifier)) {
    for (const std::string& path : curated->extraPaths) paths.emplace_back(path);
  }
  return paths;
}

}  // namespace

std::vector<Path> ExistingPaths::filter(const ReadOnlyPlatform& platform, const std::vector<Path>& paths) {
  std::vector<Path> existing;
  for (const Path& path : paths) {
    if (platform.files.exists(path)) existing.push_back(path);
  }
  return existing;
}

std::vector<Path> AssociatedDataPaths::locate(const ReadOnlyPlatform& platform, const AppIdentity& identity) {
  const Path home = platform.places.home();
  const bool isSupplemental = SupplementalInstall::matches(platform.places, identity.bundlePath);
  std::vector<Path> paths = libraryPaths(home, identity, isSupplemental);
  append(paths, curatedPaths(identity));
  if (SlugDataEligibility::includesDotfileAndNodeCaches(identity)) {
    append(paths, SlugDataPaths::all(home, Slug::derive(identity)));
  }
  return ExistingPaths::filter(platform, paths);
}

namespace SupplementalInstall {
bool matches(const Places& places, const std::string& bundlePath) {
  const std::string userApplications = places.home().appending("Applications").text() + "/";
  for (const std::string& folder :
       {std::string("/Applications/"), std::string("/System/Applications"), userApplications}) {
    if (Text::hasPrefix(bundlePath, folder)) return false;
  }
  return bundlePath.find("/Library/Application Support/") != std::string::npos;
}
}  // namespace SupplementalInstall

}  // namespace quarn
