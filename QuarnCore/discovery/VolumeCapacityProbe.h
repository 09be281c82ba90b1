#pragma once

#include <cstdint>

#include "Platform/Platform.h"

namespace quarn::VolumeCapacityProbe {

/// Bytes available for important use on the volume that holds an existing item; 0 means unknown.
std::int64_t freeBytes(const ReadOnlyPlatform& platform, const Path& item);

}  // namespace quarn::VolumeCapacityProbe
