#pragma once

#include <cstdint>

#include "QuarnCore/discovery/DriveScanner.h"

namespace quarn::DriveSpace {

/// Throws `CLIError` if a drive has less room than a queue needs. An unknown free space counts as none.
void require(const DriveInfo& drive, std::int64_t needed);

}  // namespace quarn::DriveSpace
