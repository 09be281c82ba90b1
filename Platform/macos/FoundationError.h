#pragma once

#import <Foundation/Foundation.h>

#include "Platform/CocoaError.h"

namespace quarn {

/// Converts an error of Foundation to ours.
PlatformError foundationError(CocoaError::Operation operation, NSError* _Nullable error, const Path& item,
                              const Path& destination = {});

}  // namespace quarn
