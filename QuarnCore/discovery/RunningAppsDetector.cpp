#include "QuarnCore/discovery/RunningAppsDetector.h"

#include <algorithm>

#include "Platform/Text.h"
#include "QuarnCore/discovery/ProcessList.h"

namespace quarn::RunningAppsDetector {
namespace {

using namespace std::chrono_literals;

constexpr auto pollInterval = 200ms;
constexpr double secondsAfterForce = 3.0;

bool leavesWithin(double seconds, Platform& platform, const Path& bundle) {
  const auto deadline = platform.clock.after(seconds);
  while (platform.clock.steadyNow() < deadline) {
    // Not a plain sleep: on a Mac the list of applications changes only while this waits.
    platform.applications.wait(pollInterval);
    if (runningInstances(platform, bundle).empty()) return true;
  }
  return false;
}

}  // namespace

void BundlePaths::insert(const Path& standardized) {
  paths_.insert(Text::canonical(standardized.text()));
}

bool BundlePaths::contains(const Path& standardized) const {
  return paths_.contains(Text::canonical(standardized.text()));
}

BundlePaths bundlePaths(const ReadOnlyPlatform& platform) {
  BundlePaths paths;
  for (const RunningApplication& application : platform.applications.running()) {
    if (application.bundlePath) paths.insert(platform.files.standardized(*application.bundlePath));
  }
  // Most lines name no bundle. Filtering them early saves most of the work.
  const auto mentionsBundle = [](const std::string& line) { return line.find(".app") != std::string::npos; };
  for (const std::string& line : ProcessList::lines(platform, mentionsBundle)) {
    for (const std::string_view path : NamedBundles::inLine(line)) {
      paths.insert(platform.files.standardized(Path(path)));
    }
  }
  return paths;
}

bool isAmong(const BundlePaths& running, const ReadOnlyPlatform& platform, const Path& bundle) {
  if (running.empty()) return false;
  return running.contains(platform.files.standardized(bundle)) ||
         running.contains(platform.files.resolvingLinks(bundle));
}

bool isRunning(const ReadOnlyPlatform& platform, const Path& bundle) {
  return isAmong(bundlePaths(platform), platform, bundle);
}

std::vector<RunningApplication> runningInstances(const ReadOnlyPlatform& platform, const Path& bundle) {
  BundlePaths wanted;
  wanted.insert(platform.files.standardized(bundle));
  wanted.insert(platform.files.resolvingLinks(bundle));
  std::vector<RunningApplication> instances;
  for (const RunningApplication& application : platform.applications.running()) {
    if (!application.bundlePath) continue;
    if (wanted.contains(platform.files.standardized(*application.bundlePath)))
      instances.push_back(application);
  }
  return instances;
}

bool quit(Platform& platform, const Path& bundle, bool force, double timeout) {
  const auto instances = runningInstances(platform, bundle);
  if (instances.empty()) return true;
  for (const RunningApplication& instance : instances) platform.applications.terminate(instance);
  if (leavesWithin(timeout, platform, bundle)) return true;
  if (force) {
    for (const RunningApplication& instance : runningInstances(platform, bundle)) {
      platform.applications.forceTerminate(instance);
    }
    if (leavesWithin(secondsAfterForce, platform, bundle)) return true;
  }
  return runningInstances(platform, bundle).empty();
}

bool containsProcess(const ReadOnlyPlatform& platform, const std::string& name) {
  const auto holdsName = [wanted = Text::lowercased(name)](const std::string& line) {
    return Text::lowercased(line).find(wanted) != std::string::npos;
  };
  return !ProcessList::lines(platform, holdsName).empty();
}

}  // namespace quarn::RunningAppsDetector
