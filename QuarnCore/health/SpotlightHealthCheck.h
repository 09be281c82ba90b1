#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn::SpotlightHealthCheck {

/// Asks `mdutil` for the state of the Spotlight index, of the data volume and then of the startup volume.
/// Returns at most one warning, and none if the tool doesn't answer. Never throws. The tool has no time
/// limit.
std::vector<std::string> warnings(const ReadOnlyPlatform& platform);

}  // namespace quarn::SpotlightHealthCheck
