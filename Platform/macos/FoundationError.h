#pragma once

#import <Foundation/Foundation.h>

#include "Platform/CocoaError.h"

namespace quarn {

/// What Foundation says of an operation that failed.
PlatformError foundationError(CocoaError::Operation operation, NSError* _Nullable error, const Path& item,
                              const Path& destination = {});

}  // namespace quarn
