#pragma once

#import <Foundation/Foundation.h>
#include <string>
#include <string_view>

#include "Platform/CocoaError.h"
#include "Platform/Path.h"

namespace quarn {

/// Converts all bytes, including a leading byte-order mark. Returns null if they aren't valid UTF-8.
NSString* _Nullable foundationText(std::string_view bytes);
std::string bytesOf(NSString* _Nonnull text);

/// Convert a path without changing its bytes and without asking the disk, so that a link stands for itself.
/// Return null if no item can have such a path.
NSURL* _Nullable foundationURL(const Path& path);
NSString* _Nullable foundationPath(const Path& path);
/// Returns an empty path for null.
Path pathOf(NSURL* _Nullable url);

/// Converts an error of Foundation to ours.
PlatformError foundationError(CocoaError::Operation operation, NSError* _Nullable error, const Path& item,
                              const Path& destination = {});

}  // namespace quarn
