#include "QuarnCore/health/BrokenLauncherDetector.h"

#include "Platform/PathText.h"
#include "QuarnCore/discovery/LauncherShim.h"
#include "QuarnCore/foundation/Sighting.h"

namespace quarn::BrokenLauncherDetector {

std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const Path& applicationRoot) {
  std::vector<HealthIssue> issues;
  for (const std::string& name : platform.files.list(applicationRoot, Hidden::skipped).valueOr({})) {
    const Path child = applicationRoot.appending(name);
    if (child.extension() != "app") continue;
    const auto recorded = LauncherShim::recordedTarget(platform, child);
    if (!recorded || recorded->empty()) continue;
    const Path target = PathText::fileURL(platform.places, *recorded);
    if (mayExist(platform.files, target)) continue;
    issues.push_back({.kind = HealthIssue::Kind::brokenLauncher,
                      .location = child,
                      .target = target,
                      .detail = "Launcher points to a missing app target. The app will not open until the "
                                "launcher is retargeted, removed, or the app is reinstalled.",
                      .sizeBytes = 0});
  }
  return issues;
}

}  // namespace quarn::BrokenLauncherDetector
