#pragma once

#include "Platform/Platform.h"

/// What makes moving a bundle risky, read from the bundle itself. What can't be read is false.
namespace quarn::AppFlags {

/// It carries a store receipt.
bool isMacAppStore(const ReadOnlyPlatform& platform, const Path& bundle);
bool hasLoginItems(const ReadOnlyPlatform& platform, const Path& bundle);
bool hasSystemExtension(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::AppFlags
