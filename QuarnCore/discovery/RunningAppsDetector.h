#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "Platform/Platform.h"

/// Which bundles run: those that the system lists as running applications, and those from inside which
/// some process in the process list was started. Never throws.
namespace quarn::RunningAppsDetector {

/// Standardized paths of bundles.
class BundlePaths {
 public:
  void insert(const Path& standardized);
  bool contains(const Path& standardized) const;
  bool empty() const { return paths_.empty(); }

 private:
  std::unordered_set<std::string> paths_;
};

BundlePaths bundlePaths(const ReadOnlyPlatform& platform);
/// By its standardized path, or by that of what the path leads to: through a link, or on a Mac with names in
/// other letters. The system lists what runs by its real path.
bool isAmong(const BundlePaths& running, const ReadOnlyPlatform& platform, const Path& bundle);
bool isRunning(const ReadOnlyPlatform& platform, const Path& bundle);
std::vector<RunningApplication> runningInstances(const ReadOnlyPlatform& platform, const Path& bundle);

/// Asks every instance to quit and waits up to `timeout` seconds; with `force`, ends what is left and
/// waits 3 seconds more. True when no instance is left, at once if there was none. A process that only
/// the process list shows can't be asked, and doesn't count.
bool quit(Platform& platform, const Path& bundle, bool force, double timeout);

/// True if the name occurs, letter case aside, anywhere in a line of the process list.
bool containsProcess(const ReadOnlyPlatform& platform, const std::string& name);

}  // namespace quarn::RunningAppsDetector
