#include <algorithm>
#include <filesystem>

#include "tests/cli/CampaignLooks.h"
#include "tests/cli/Faults.h"
#include "tests/cli/InstallCampaignLooks.h"

// Where the bytes are after an installation.

namespace installs {
namespace {

using campaign::everything;
using campaign::facts;

/// Where docs/recovery.md says that something may be which was set aside.
Lines asidePlaces() {
  Lines places;
  Lines folders = {scene::home + "/.Trash", scene::driveTrash(), "/Applications/.QuarnTrash",
                   drivesApps + "/.QuarnTrash", scene::driveTrash("")};
  for (const std::string& folder : folders) {
    for (const std::string& name : fault::names(folder)) places.push_back(folder + "/" + name);
  }
  // While a package is installed, the copy that made room for it.
  for (const std::string& name : fault::names(drivesApps))
    if (name.starts_with(".quarn-replaced-")) places.push_back(drivesApps + "/" + name);
  return places;
}

}  // namespace

bool Trial::standsSomewhere(const Lines& tree) const {
  Lines places = asidePlaces();
  for (const std::string& app : job_.apps) {
    places.push_back("/Applications/" + app);
    places.push_back(drivesApps + "/" + app);
  }
  return std::any_of(places.begin(), places.end(),
                     [&](const std::string& place) { return scene::tree(place) == tree; });
}

std::string Trial::lostProblems() const {
  std::string problems;
  for (const auto& [path, tree] : precious_)
    if (!standsSomewhere(tree)) problems += "LOST: " + path + " stands whole nowhere\n";
  const auto now = contents();
  for (const std::string& content : contents_)
    if (!now.contains(content)) problems += "LOST: a file with " + content.substr(0, 60) + "\n";
  return problems;
}

/// What a run may make or change: judged by itself, or an item of its own.
bool Trial::isAllowed(const std::string& path) const {
  for (const std::string& other : changedByOthers_)
    if (campaign::isAtOrBelow(path, other)) return true;
  for (const std::string& app : job_.apps) {
    if (campaign::isAtOrBelow(path, "/Applications/" + app) ||
        campaign::isAtOrBelow(path, drivesApps + "/" + app))
      return true;
  }
  for (const std::string& beginning : {std::string("/Applications/.quarn-"), drivesApps + "/.quarn"})
    if (path.starts_with(beginning)) return true;
  for (const std::string folder :
       {"/Applications", "/Library/LaunchAgents", "/Volumes/X9/ExternalQuarn/Apps"})
    if (campaign::isAtOrBelow(path, folder + std::string("/.QuarnTrash"))) return true;
  if (job_.name == "image" && campaign::isAtOrBelow(path, attachedImage)) return true;
  return path == "/Library/LaunchAgents/com.example.setup.plist" ||
         (campaign::isAtOrBelow(path, sessionRoot) &&
          !campaign::isAtOrBelow(path, sessionRoot + "/" + foreignSession));
}

std::string Trial::foreignProblems() const {
  std::string problems;
  for (const auto& [path, before] : foreign_) {
    if (!scene::exists(path))
      problems += "FOREIGN gone: " + path + "\n";
    else if (facts(path) != before)
      problems += "FOREIGN changed: " + path + "\n";
  }
  const Lines trashes = {scene::home + "/.Trash", scene::driveTrash()};
  for (const std::string& path : everything()) {
    if (foreign_.contains(path) || isAllowed(path)) continue;
    const bool isAside = std::any_of(trashes.begin(), trashes.end(), [&](const std::string& trash) {
      return campaign::isAtOrBelow(path, trash);
    });
    if (!isAside) problems += "FOREIGN new: " + path + "\n";
  }
  return problems;
}

}  // namespace installs
