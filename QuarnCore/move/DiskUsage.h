#pragma once

#include <cstdint>

#include "Platform/Platform.h"

namespace quarn::DiskUsage {

/// Returns the disk use of an item in kilobytes, as `du -sk` counts it. Throws `MoveRefused`.
std::int64_t kilobytes(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::DiskUsage
