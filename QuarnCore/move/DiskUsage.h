#pragma once

#include <cstdint>

#include "Platform/Platform.h"

namespace quarn::DiskUsage {

/// Kilobytes of disk that an item takes, as `du -sk` counts them. Throws `MoveRefused`.
std::int64_t kilobytes(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::DiskUsage
