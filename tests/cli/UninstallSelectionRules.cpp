#include <algorithm>
#include <filesystem>
#include <set>
#include <sys/stat.h>

#include "tests/cli/UninstallRules.h"
#include "tests/support/Scene.h"

namespace rules {
namespace {

namespace fs = std::filesystem;
using homes::Home;
using homes::Lines;

std::set<std::string> categoriesTaken(const Lines& flags) {
  const std::pair<const char*, Lines> switches[] = {
      {"--include-data", {"applicationSupport", "httpStorages", "webKit", "savedAppState"}},
      {"--include-caches", {"caches"}},
      {"--include-logs", {"logs"}},
      {"--include-prefs", {"preferences"}},
      {"--include-containers", {"containers", "groupContainers"}},
      {"--include-launch-agents", {"launchAgents"}},
      {"--include-launch-daemons", {"launchDaemons"}},
      {"--include-receipts", {"receipts"}},
  };
  const auto has = [&flags](const std::string& flag) {
    return std::count(flags.begin(), flags.end(), flag) > 0;
  };
  std::set<std::string> taken;
  if (has("--minimal") || has("--executable-only")) return taken;
  const bool isAll = std::none_of(flags.begin(), flags.end(),
                                  [](const std::string& flag) { return flag.starts_with("--include-"); });
  for (const auto& [flag, categories] : switches) {
    const bool isOfAll =
        isAll && flag != std::string("--include-receipts") && flag != std::string("--include-launch-daemons");
    if (isOfAll || has(flag)) taken.insert(categories.begin(), categories.end());
  }
  return taken;
}

bool mayChange(const std::string& folder) {
  struct stat found {};
  return ::stat(folder.c_str(), &found) == 0 && (found.st_mode & S_IWUSR) != 0;
}

}  // namespace

bool isTaken(const Home& home, const std::string& path, const Candidate& candidate) {
  if (path == home.bundle) return true;
  const Lines& flags = home.flags;
  const auto has = [&flags](const std::string& flag) {
    return std::count(flags.begin(), flags.end(), flag) > 0;
  };
  if (candidate.category == "executable")
    return has("--include-external-target") && !has("--minimal") && !has("--executable-only");
  return candidate.isSelected && categoriesTaken(flags).contains(candidate.category);
}

std::string realPlace(const std::string& path) {
  const fs::path item = path;
  return (fs::canonical(item.parent_path()) / item.filename()).string();
}

bool holdsVolume(const Home& home, const std::string& path) {
  const std::string place = realPlace(path);
  return std::any_of(home.mounts.begin(), home.mounts.end(), [&](const std::string& mount) {
    const std::string at = realPlace(mount);
    return at == place || at.starts_with(place + "/");
  });
}

bool isStuck(const Home& home, const std::string& path) {
  const std::string place = realPlace(path);
  const bool isFolder = fs::is_directory(fs::symlink_status(place));
  // A folder that may not be changed can't get another parent, either: rename(2).
  return holdsVolume(home, path) || !mayChange(fs::path(place).parent_path()) ||
         (isFolder && !mayChange(place));
}

}  // namespace rules
