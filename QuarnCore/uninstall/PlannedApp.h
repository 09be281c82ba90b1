#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppRecord.h"

namespace quarn::PlannedApp {

/// Returns why a plan may have been made with names that aren't those of the application: the disk fails to
/// read its files, or they tell something else than its record. Nothing if it has no property list, or none
/// any more.
std::optional<std::string> reasonToDoubt(const ReadOnlyPlatform& platform, const AppRecord& planned);

}  // namespace quarn::PlannedApp
