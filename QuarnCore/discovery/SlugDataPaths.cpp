#include "QuarnCore/discovery/SlugDataPaths.h"

#include "Platform/Text.h"
#include "QuarnCore/discovery/CuratedDomains.h"
#include "QuarnCore/discovery/OwnItems.h"

namespace quarn {
namespace {

std::vector<Path> below(const Path& folder, const std::vector<std::string>& names) {
  OwnItems items;
  for (const std::string& name : names) items.add(folder, name);
  return items.paths;
}

}  // namespace

namespace DotfileEntries {

std::vector<std::string> relativeNames(const std::string& slug) {
  const std::string name = "." + slug;
  return {name, name + ".json", name + ".json.backup", name + "rc", name + ".log"};
}

std::vector<Path> urls(const Path& home, const std::string& slug) {
  return below(home, relativeNames(slug));
}

}  // namespace DotfileEntries

namespace NodeCliCacheEntries {

std::vector<std::string> folderNames(const std::string& slug) {
  return {slug + "-cli-nodejs", slug + "-cli", slug + "-nodejs"};
}

std::vector<Path> urls(const Path& home, const std::string& slug) {
  return below(home.appending("Library/Caches"), folderNames(slug));
}

}  // namespace NodeCliCacheEntries

std::vector<Path> SlugDataPaths::all(const Path& home, const std::string& slug) {
  std::vector<Path> paths = DotfileEntries::urls(home, slug);
  for (const Path& path : NodeCliCacheEntries::urls(home, slug)) paths.push_back(path);
  return paths;
}

bool SlugDataEligibility::includesDotfileAndNodeCaches(const AppIdentity& identity) {
  if (!identity.bundleIdentifier) return true;
  const auto curated = CuratedDomains::entry(identity.bundleIdentifier);
  if (curated && curated->excludesDotfileAndNodeCaches) return false;
  const std::string identifier = Text::lowercased(*identity.bundleIdentifier);
  return identifier.find("url-handler") == std::string::npos &&
         identifier.find("urlhandler") == std::string::npos;
}

}  // namespace quarn
