#pragma once

#include "Platform/CocoaError.h"

namespace quarn {

/// `CocoaError::fromErrno` with the name of the volume that was written to, should it be asked for.
PlatformError writeError(CocoaError::Operation operation, int errnoValue, const Path& item,
                         const Path& destination = {});

}  // namespace quarn
