#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthIssue.h"
#include "QuarnCore/health/SymlinkScanning.h"

namespace quarn::SignatureBrokenDetector {

/// Verifies the applications that the links lead to, in their order, and reports those whose signature or
/// ticket fails. What isn't signed, isn't an application or isn't there is left out. Never throws. Starts
/// three tools for each application; see `CodesignVerifier::verify`.
std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform,
                                const std::vector<ApplicationsRootScan::Symlink>& symlinks);

}  // namespace quarn::SignatureBrokenDetector
