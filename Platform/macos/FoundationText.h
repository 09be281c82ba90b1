#pragma once

#import <Foundation/Foundation.h>
#include <string>
#include <string_view>

#include "Platform/Path.h"

namespace quarn {

/// All of them, a byte-order mark at the beginning too. Null if the bytes are no UTF-8.
NSString* _Nullable foundationText(std::string_view bytes);
std::string bytesOf(NSString* _Nonnull text);

/// The path with the bytes that it has, whatever the item is, so that a link is meant itself. Null if no
/// path can have these bytes.
NSURL* _Nullable foundationURL(const Path& path);
NSString* _Nullable foundationPath(const Path& path);
/// Empty for null.
Path pathOf(NSURL* _Nullable url);

}  // namespace quarn
