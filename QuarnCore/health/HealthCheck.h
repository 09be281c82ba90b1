#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/health/HealthReport.h"

/// Whether the applications that were moved still work, and what is left over.
namespace quarn::HealthCheck {

/// Runs every check once, in a fixed order, and changes nothing. `applicationRoots` are searched for links;
/// the other checks look into "/Applications" and the user's library. Moved applications are looked for on
/// every mounted volume and in `extraDriveRoots`. Never throws: what can't be read gives no finding. Nothing
/// is an orphan while a link may be there that couldn't be seen.
HealthReport run(const ReadOnlyPlatform& platform, const std::vector<Path>& applicationRoots,
                 const std::vector<Path>& extraDriveRoots = {});

}  // namespace quarn::HealthCheck
