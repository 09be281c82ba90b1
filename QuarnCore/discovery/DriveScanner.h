#pragma once

#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/DriveInfo.h"

namespace quarn::DriveScanner {

/// The browsable volumes: internal ones first, then by name. What can't be read is left out.
std::vector<DriveInfo> scan(const ReadOnlyPlatform& platform);

}  // namespace quarn::DriveScanner
