#pragma once

#include <vector>

#include "Platform/Platform.h"

namespace quarn::ExternalAppsRootsDiscovery {

/// The folders of moved applications that exist on mounted volumes, then those of `extra` that exist.
/// The same folder may come twice.
std::vector<Path> roots(const ReadOnlyPlatform& platform, const std::vector<Path>& extra);

}  // namespace quarn::ExternalAppsRootsDiscovery
