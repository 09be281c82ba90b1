#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "Platform/Platform.h"

/// Finds out which bundles are running: those that the system lists as running applications, and those from
/// which a process in the process list was started. Never throws.
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
/// Returns whether the bundle is among them, by its standardized path or by its path with links resolved. The
/// system lists running applications by their real path; on a Mac that also has the letter case of the disk.
bool isAmong(const BundlePaths& running, const ReadOnlyPlatform& platform, const Path& bundle);
bool isRunning(const ReadOnlyPlatform& platform, const Path& bundle);
std::vector<RunningApplication> runningInstances(const ReadOnlyPlatform& platform, const Path& bundle);

/// Asks every instance to quit and waits up to `timeout` seconds. With `force`, then kills what is left and
/// waits 3 more seconds. Returns true if no instance is left, and at once if there was none. A process that
/// only appears in the process list can't be asked and doesn't count.
bool quit(Platform& platform, const Path& bundle, bool force, double timeout);

/// Returns whether the name occurs anywhere in a line of the process list, ignoring letter case.
bool containsProcess(const ReadOnlyPlatform& platform, const std::string& name);

}  // namespace quarn::RunningAppsDetector
