#pragma once

#include "Platform/CocoaError.h"

namespace quarn {

/// Returns `CocoaError::fromErrno` for a failed write. Looks up the name of the volume only if the sentence
/// needs it.
PlatformError writeError(CocoaError::Operation operation, int errnoValue, const Path& item,
                         const Path& destination = {});

}  // namespace quarn
