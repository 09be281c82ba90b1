#pragma once

#include <string>
#include <vector>

#include "Platform/Places.h"
#include "Platform/Platform.h"
#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn {

namespace ExistingPaths {
/// Returns the paths at which something exists (following links), in the same order.
std::vector<Path> filter(const ReadOnlyPlatform& platform, const std::vector<Path>& paths);
}  // namespace ExistingPaths

namespace AssociatedDataPaths {
/// Returns the existing data paths of an application that the general rules know.
std::vector<Path> locate(const ReadOnlyPlatform& platform, const AppIdentity& identity);
}  // namespace AssociatedDataPaths

namespace SupplementalInstall {
/// Returns whether a bundle lies in a support folder instead of a folder for applications.
bool matches(const Places& places, const std::string& bundlePath);
}  // namespace SupplementalInstall

}  // namespace quarn
