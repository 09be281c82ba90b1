#include <algorithm>
#include <filesystem>

#include "tests/cli/CampaignLooks.h"
#include "tests/cli/CampaignScene.h"

// Where the bytes are after a run.

namespace campaign {
namespace {

namespace fs = std::filesystem;
using fault::app;

const std::string recordFolder = fs::path(scene::manifest).parent_path();
const std::string hiddenLauncher = "/Applications/.quarn-launcher-";

/// Under its hidden name, or, where that couldn't be removed, set aside under it.
bool isLaunchersPlace(const std::string& path) {
  return path.starts_with(hiddenLauncher) || path.starts_with(scene::home + "/.Trash/.quarn-launcher-") ||
         isAtOrBelow(path, "/Applications/.QuarnTrash");
}

}  // namespace

Lines Trial::placesOf(const Item& item) const {
  Lines places = {item.source, item.destination};
  const fs::path destination = item.destination;
  const std::string stem = destination.stem();
  const std::string beside = destination.parent_path() / ".QuarnTrash";
  for (const std::string& folder : {scene::driveTrash(), scene::home + "/.Trash", beside}) {
    for (const std::string& place : named(folder, stem)) places.push_back(place);
  }
  return places;
}

bool Trial::isWhole(const Item& item, const std::string& place) const {
  const Lines &wanted = original_.at(item.source), found = scene::tree(place);
  // Into the destination of a path move more may have been merged.
  if (command_.way == Way::path)
    return std::includes(found.begin(), found.end(), wanted.begin(), wanted.end());
  return found == wanted;
}

std::string Trial::itemProblems() const {
  std::string problems;
  for (const Item& item : command_.items) {
    const Lines places = placesOf(item);
    if (std::none_of(places.begin(), places.end(), [&](const auto& place) { return isWhole(item, place); }))
      problems += "LOST: " + item.source + " stands whole nowhere\n";
  }
  return problems;
}

std::string Trial::launcherProblems() const {
  if (command_.way != Way::launcher || isDone(command_.items[0])) return "";
  if (scene::tree(app) == launcher_) return "";
  for (const std::string& place : named("/Applications", ".quarn-launcher-")) {
    if (scene::tree(place) == launcher_) return "";
  }
  return "LOST: the launcher\n";
}

/// What a run may make or change: judged by itself, or an item of its own.
bool Trial::isAllowed(const std::string& path) const {
  if (isAtOrBelow(path, scene::installsDB) || path == scene::installsDB + "-journal") return true;
  if (path == recordFolder || path == scene::manifest || path.starts_with(recordFolder + "/.quarn.nosync"))
    return true;
  if (command_.way == Way::launcher && isLaunchersPlace(path)) return true;
  return std::any_of(command_.items.begin(), command_.items.end(), [&](const Item& item) {
    const std::string beside = fs::path(item.destination).parent_path() / ".QuarnTrash";
    return isAtOrBelow(path, item.source) || isAtOrBelow(path, item.destination) || isAtOrBelow(path, beside);
  });
}

std::string Trial::foreignProblems() const {
  std::string problems;
  for (const auto& [path, before] : foreign_) {
    if (!scene::exists(path))
      problems += "FOREIGN gone: " + path + "\n";
    else if (facts(path) != before)
      problems += "FOREIGN changed: " + path + "\n";
  }
  for (const std::string& path : everything()) {
    if (foreign_.contains(path) || isAllowed(path)) continue;
    const bool isOnTheWay = std::any_of(command_.items.begin(), command_.items.end(), [&](const Item& item) {
      const Lines places = placesOf(item);
      return isAtOrBelow(item.destination, path) ||
             std::any_of(places.begin(), places.end(),
                         [&](const auto& place) { return isAtOrBelow(path, place); });
    });
    if (!isOnTheWay) problems += "FOREIGN new: " + path + "\n";
  }
  return problems;
}

}  // namespace campaign
