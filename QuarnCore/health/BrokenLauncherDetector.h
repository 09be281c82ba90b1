#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthIssue.h"

namespace quarn::BrokenLauncherDetector {

/// Finds the launchers directly in a folder whose application is missing, in the order of the disk. Never
/// throws: what can't be read is no launcher.
std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform, const Path& applicationRoot);

}  // namespace quarn::BrokenLauncherDetector
