#include "QuarnCore/discovery/LibraryDataPaths.h"

namespace quarn {
namespace {

bool namesOneItem(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

}  // namespace

namespace LibraryDataPaths {
std::vector<Path> byBundleId(const Path& home, const std::optional<std::string>& bundleId) {
  if (!bundleId) return {};
  const Path library = home.appending("Library");
  OwnItems items;
  items.add(library.appending("HTTPStorages"), *bundleId);
  items.add(library.appending("Caches"), *bundleId);
  items.add(library.appending("WebKit"), *bundleId);
  items.add(library.appending("Preferences"), *bundleId + ".plist");
  return items.paths;
}

std::vector<Path> byDisplayName(const Path& home, const std::string& name) {
  OwnItems items;
  items.add(home.appending("Library/Application Support"), name);
  const std::vector<Path> rest = supplemental(home, name);
  items.paths.insert(items.paths.end(), rest.begin(), rest.end());
  return items.paths;
}

std::vector<Path> systemByBundleId(const std::optional<std::string>& bundleId) {
  if (!bundleId) return {};
  const Path library("/Library");
  OwnItems items;
  items.add(library.appending("Application Support"), *bundleId);
  items.add(library.appending("Caches"), *bundleId);
  items.add(library.appending("Preferences"), *bundleId + ".plist");
  items.add(library.appending("Logs"), *bundleId);
  return items.paths;
}

std::vector<Path> systemByDisplayName(const std::string& name) {
  const Path library("/Library");
  OwnItems items;
  items.add(library.appending("Application Support"), name);
  items.add(library.appending("Caches"), name);
  items.add(library.appending("Logs"), name);
  return items.paths;
}

std::vector<Path> supplemental(const Path& home, const std::string& name) {
  const Path library = home.appending("Library");
  OwnItems items;
  items.add(library.appending("Caches"), name);
  items.add(library.appending("Logs"), name);
  items.add(library.appending("Saved Application State"), name + ".savedState");
  return items.paths;
}
}  // namespace LibraryDataPaths

void OwnItems::add(const Path& folder, std::string_view name) {
  if (namesOneItem(name)) paths.push_back(folder.appending(name));
}

}  // namespace quarn
