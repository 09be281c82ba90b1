#include "QuarnCore/discovery/SlugDataPaths.h"

#include <map>

#include "Platform/Text.h"
#include "QuarnCore/discovery/LibraryDataPaths.h"

namespace quarn {
namespace {

std::vector<Path> below(const Path& folder, const std::vector<std::string>& names) {
  OwnItems items;
  for (const std::string& name : names) items.add(folder, name);
  return items.paths;
}

}  // namespace

namespace CuratedDomains {
namespace {

using Table = std::map<std::string, OwnedPaths>;

const Table& table() {
  static const Table domains = {
      {"com.anthropic.claudefordesktop", {true, {}}},
      {"com.anthropic.claude-code-url-handler", {true, {}}},
      {"com.apple.logic10",
       {false, {"/Library/Application Support/Logic", "/Library/Application Support/GarageBand"}}},
      {"com.apple.finalcut", {false, {"/Library/Application Support/ProApps"}}},
      {"com.adobe.photoshop", {false, {"/Library/Application Support/Adobe"}}},
      {"com.arobas-music.guitarpro8", {false, {"/Library/Application Support/Arobas Music"}}},
      {"com.image-line.flstudio", {false, {"/Library/Application Support/Image-Line"}}},
      {"com.steinberg.spectralayers12", {false, {"/Library/Application Support/Steinberg"}}},
  };
  return domains;
}

}  // namespace

std::optional<OwnedPaths> entry(const std::optional<std::string>& bundleIdentifier) {
  if (!bundleIdentifier) return std::nullopt;
  const auto found = table().find(Text::lowercased(*bundleIdentifier));
  if (found == table().end()) return std::nullopt;
  return found->second;
}
}  // namespace CuratedDomains

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
