#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn::DataLocator {

/// The data paths of an application that exist: those that the installs database tracks, then those
/// known in general, each standardized path once. Never throws.
std::vector<Path> locate(Platform& platform, const std::optional<std::string>& bundleId,
                         const std::string& appName, const Path& bundlePath,
                         const std::optional<std::string>& executableName);

}  // namespace quarn::DataLocator
