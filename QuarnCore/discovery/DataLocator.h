#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn::DataLocator {

/// The data paths of an application that exist: those that the installs database tracks, then those
/// known in general, each standardized path once. What `ProtectedPlaces` holds back is none, nor is the
/// bundle, anything in it or around it, or what lies in a folder of this tool. Never throws.
std::vector<Path> locate(const ReadOnlyPlatform& platform, const std::optional<std::string>& bundleId,
                         const std::string& appName, const Path& bundlePath,
                         const std::optional<std::string>& executableName);
/// The same for whoever asks for many applications.
std::vector<Path> locate(const ReadOnlyPlatform& platform, const ProtectedPlaces& places,
                         const AppIdentity& identity);

}  // namespace quarn::DataLocator
