#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn::DataLocator {

/// Returns the existing data paths of an application: those in the installs database, then those that the
/// general rules know, each standardized path once. Leaves out what `ProtectedPlaces` protects; the bundle,
/// anything in it and anything around it; and whatever lies in a folder of this tool. Never throws.
std::vector<Path> locate(const ReadOnlyPlatform& platform, const std::optional<std::string>& bundleId,
                         const std::string& appName, const Path& bundlePath,
                         const std::optional<std::string>& executableName);
/// Does the same, for callers that ask for many applications.
std::vector<Path> locate(const ReadOnlyPlatform& platform, const ProtectedPlaces& places,
                         const AppIdentity& identity);

}  // namespace quarn::DataLocator
