#pragma once

#include <string>
#include <vector>

#include "Platform/Places.h"
#include "Platform/Platform.h"
#include "QuarnCore/foundation/AppIdentity.h"

namespace quarn {

namespace ExistingPaths {
/// The paths at which something exists (links followed), in their order.
std::vector<Path> filter(const ReadOnlyPlatform& platform, const std::vector<Path>& paths);
}  // namespace ExistingPaths

namespace AssociatedDataPaths {
/// The data paths of an application that exist, by what is generally known of where data lies.
std::vector<Path> locate(const ReadOnlyPlatform& platform, const AppIdentity& identity);
}  // namespace AssociatedDataPaths

namespace SupplementalInstall {
/// True for a bundle that lives inside a support folder instead of an applications folder.
bool matches(const Places& places, const std::string& bundlePath);
}  // namespace SupplementalInstall

}  // namespace quarn
