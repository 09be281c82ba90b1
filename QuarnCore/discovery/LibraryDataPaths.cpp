#include "QuarnCore/discovery/LibraryDataPaths.h"

#include "QuarnCore/discovery/OwnItem.h"

namespace quarn::LibraryDataPaths {

std::vector<Path> byBundleId(const Path& home, const std::optional<std::string>& bundleId) {
  if (!bundleId) return {};
  const Path library = home.appending("Library");
  return OwnItems::paths({{library.appending("HTTPStorages"), *bundleId},
                          {library.appending("Caches"), *bundleId},
                          {library.appending("WebKit"), *bundleId},
                          {library.appending("Preferences"), *bundleId + ".plist"}});
}

std::vector<Path> byDisplayName(const Path& home, const std::string& name) {
  std::vector<Path> paths = OwnItems::paths({{home.appending("Library/Application Support"), name}});
  const std::vector<Path> rest = supplemental(home, name);
  paths.insert(paths.end(), rest.begin(), rest.end());
  return paths;
}

std::vector<Path> systemByBundleId(const std::optional<std::string>& bundleId) {
  if (!bundleId) return {};
  const Path library("/Library");
  return OwnItems::paths({{library.appending("Application Support"), *bundleId},
                          {library.appending("Caches"), *bundleId},
                          {library.appending("Preferences"), *bundleId + ".plist"},
                          {library.appending("Logs"), *bundleId}});
}

std::vector<Path> systemByDisplayName(const std::string& name) {
  const Path library("/Library");
  return OwnItems::paths({{library.appending("Application Support"), name},
                          {library.appending("Caches"), name},
                          {library.appending("Logs"), name}});
}

std::vector<Path> supplemental(const Path& home, const std::string& name) {
  const Path library = home.appending("Library");
  return OwnItems::paths({{library.appending("Caches"), name},
                          {library.appending("Logs"), name},
                          {library.appending("Saved Application State"), name + ".savedState"}});
}

}  // namespace quarn::LibraryDataPaths
