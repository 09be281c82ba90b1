#include "QuarnCore/health/TrackedFilesChecker.h"

#include <algorithm>

#include "QuarnCore/discovery/InstallsDB.h"

namespace quarn::TrackedFilesChecker {
namespace {

using Files = std::vector<std::string>;

constexpr std::size_t shownFiles = 3;

std::string sampleOf(const Files& missing) {
  std::string sample;
  const std::size_t shown = std::min(shownFiles, missing.size());
  for (std::size_t i = 0; i < shown; ++i) sample += (i > 0 ? ", " : "") + missing[i];
  if (missing.size() > shown) sample += " (+" + std::to_string(missing.size() - shown) + " more)";
  return sample;
}

}  // namespace

std::optional<HealthIssue> check(const ReadOnlyPlatform& platform, const Path& location, const Path& target) {
  const Path database = InstallsDB::defaultPath(platform.places);
  if (!InstallsDB::isAvailable(platform, database)) return std::nullopt;
  const auto entry = InstallsDBEntryResolver::resolve(platform, location, target);
  if (!entry) return std::nullopt;
  const Files tracked = InstallsDB::trackedFiles(platform, entry->installId, database);
  const Files missing = InstallsDB::missing(platform, tracked);
  if (missing.empty()) return std::nullopt;
  return HealthIssue{.kind = HealthIssue::Kind::missingTrackedFiles,
                     .location = location,
                     .target = target,
                     .detail = std::to_string(missing.size()) + "/" + std::to_string(tracked.size()) +
                               " tracked files missing for " + entry->appName + ": " + sampleOf(missing),
                     .sizeBytes = 0};
}

}  // namespace quarn::TrackedFilesChecker
