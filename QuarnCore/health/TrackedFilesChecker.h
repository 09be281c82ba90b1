#pragma once

#include <optional>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthIssue.h"

namespace quarn::TrackedFilesChecker {

/// Reports the files that the installs database lists for a moved application and that no longer exist. A
/// file behind a dangling link doesn't. Returns nothing if none is missing, or if the database isn't there,
/// can't be read or doesn't know the application. Never throws.
std::optional<HealthIssue> check(const ReadOnlyPlatform& platform, const Path& location, const Path& target);

}  // namespace quarn::TrackedFilesChecker
