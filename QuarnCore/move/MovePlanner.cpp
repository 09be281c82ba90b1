#include "QuarnCore/move/MovePlanner.h"

#include <algorithm>
#include <set>

#include "Platform/Text.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/AppBundleScanRoots.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/SizingService.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn {

namespace MovePlanner {
namespace {

/// The folders at which the climb from an item ends: what lies above a folder for applications doesn't
/// matter.
using Stops = std::vector<std::string>;

Stops climbingStops(const ReadOnlyPlatform& platform) {
  Stops stops;
  for (const Path& root : AppBundleScanRoots::standardApplicationRoots(platform, false)) {
    stops.push_back(platform.files.standardized(root).text());
  }
  return stops;
}

bool isLinkOrInsideOne(const ReadOnlyPlatform& platform, const Path& item, const Stops& stops) {
  Path current = platform.files.standardized(item);
  while (true) {
    if (platform.files.isSymbolicLink(current)) return true;
    const bool isStop = std::any_of(stops.begin(), stops.end(), [&current](const std::string& stop) {
      return Text::equal(stop, current.text());
    });
    if (isStop || current.parent() == current) return false;
    current = current.parent();
  }
}

bool mayMove(const ReadOnlyPlatform& platform, const Path& source, const Stops& stops) {
  return platform.files.exists(source) && !isUnsafePrefsPlist(platform, source) &&
         !isLinkOrInsideOne(platform, source, stops);
}

MoveJob job(std::string label, const Path& source, const Path& destination, std::int64_t bytes) {
  return {.id = UUID::make(),
          .label = std::move(label),
          .source = source,
          .destination = destination,
          .status = {},
          .bytesTotal = bytes,
          .bytesCopied = 0};
}

void appendBundleJob(const ReadOnlyPlatform& platform, const AppEntry& entry, const DriveInfo& drive,
                     const Stops& stops, std::vector<MoveJob>& jobs) {
  if (!mayMove(platform, entry.bundlePath, stops)) return;
  const Path destination =
      AppStorageNames::appsRoot(drive.mountPath).appending(entry.bundlePath.lastComponent());
  jobs.push_back(job(entry.name, entry.bundlePath, destination, entry.appSize));
}

void appendDataJobs(const ReadOnlyPlatform& platform, const AppEntry& entry, const DriveInfo& drive,
                    const Stops& stops, std::vector<MoveJob>& jobs) {
  const Path dataRoot = AppStorageNames::dataRoot(drive.mountPath);
  std::set<std::string> seen;
  for (std::size_t number = 0; number < entry.dataPaths.size(); ++number) {
    const Path& path = entry.dataPaths[number];
    if (!mayMove(platform, path, stops) || !seen.insert(Text::canonical(path.text())).second) continue;
    const auto known = entry.sizeOfDataPath(number);
    jobs.push_back(job(entry.name + " — " + path.lastComponent(), path,
                       MoveDestination::dataDestination(platform, path, dataRoot),
                       known ? *known : SizingService::measure(platform, path)));
  }
}

std::vector<MoveJob> firstOfEachDestination(const std::vector<MoveJob>& jobs) {
  std::set<std::string> taken;
  std::vector<MoveJob> kept;
  for (const MoveJob& job : jobs) {
    if (taken.insert(Text::canonical(job.destination.text())).second) kept.push_back(job);
  }
  return kept;
}

std::string key(const ReadOnlyPlatform& platform, const Path& source) {
  return Text::canonical(platform.files.standardized(source).text());
}

bool isInside(const Path& item, const std::set<std::string>& sources) {
  for (Path around = item.parent(); around.parent() != around; around = around.parent()) {
    if (sources.contains(around.text())) return true;
  }
  return false;
}

/// Removes jobs for items inside the source of another job, because they move with it. After that job their
/// own job would find them behind a link and tear them out of the copy; before it, their copy would take the
/// place of the folder on the drive.
std::vector<MoveJob> withoutNested(const ReadOnlyPlatform& platform, const std::vector<MoveJob>& jobs) {
  std::set<std::string> sources;
  for (const MoveJob& job : jobs) sources.insert(key(platform, job.source));
  std::vector<MoveJob> kept;
  for (const MoveJob& job : jobs) {
    if (!isInside(Path(key(platform, job.source)), sources)) kept.push_back(job);
  }
  return kept;
}

}  // namespace

std::vector<MoveJob> buildAppJobs(const ReadOnlyPlatform& platform, const std::vector<AppEntry>& entries,
                                  const DriveInfo& drive, bool includeData) {
  const Stops stops = climbingStops(platform);
  std::vector<MoveJob> jobs;
  for (const AppEntry& entry : entries) {
    appendBundleJob(platform, entry, drive, stops, jobs);
    if (includeData) appendDataJobs(platform, entry, drive, stops, jobs);
  }
  // Duplicates go first, because a job that is dropped doesn't carry its contents along.
  return withoutNested(platform, firstOfEachDestination(jobs));
}

bool shouldMove(const ReadOnlyPlatform& platform, const Path& source) {
  return mayMove(platform, source, climbingStops(platform));
}

void requireStillMovable(const ReadOnlyPlatform& platform, const Path& source) {
  if (!platform.files.exists(source) || !isLinkOrInsideOne(platform, source, climbingStops(platform))) return;
  throw MoveRefused("It has been moved since it was looked at: " + source.text());
}

bool isUnsafePrefsPlist(const ReadOnlyPlatform& platform, const Path& item) {
  if (item.extension() != "plist") return false;
  const std::string folder = platform.files.standardized(item.parent()).text();
  return Text::hasSuffix(folder, "/Library/Preferences") ||
         Text::hasSuffix(folder, "/Library/Preferences/ByHost");
}
}  // namespace MovePlanner

namespace MoveDestination {
namespace {

std::string relativePath(const Path& source, const Path& home) {
  const std::string prefix = home.text() + "/";
  const std::string& text = source.text();
  if (text.starts_with(prefix)) return text.substr(prefix.size());
  if (text.starts_with("/Library/")) return "System" + text;
  return source.lastComponent();
}

}  // namespace

Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent) {
  return dataDestination(platform, source, dataParent, platform.places.home());
}

Path dataDestination(const ReadOnlyPlatform& platform, const Path& source, const Path& dataParent,
                     const Path& home) {
  return dataParent.appending(
      relativePath(platform.files.standardized(source), platform.files.standardized(home)));
}
}  // namespace MoveDestination

}  // namespace quarn
