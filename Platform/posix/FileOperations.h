#pragma once

#include <string_view>

#include "Platform/CocoaError.h"
#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// See `FileSystem::createFolder`.
Result<void> makeFolder(const Path& folder);

/// See `FileSystem::writeAtomically`. Returns 0 or the error number; after a failure nothing has changed and
/// no other file is left behind. Also removes temporary files that a killed run left in the folder.
int writeAtomically(const Path& file, std::string_view content);

/// Renames an item unless something, even a dangling link, exists at the destination. Returns 0 or the error
/// number. On a volume without an exclusive rename it first checks the destination and then renames, which
/// leaves a short race.
int renameExclusively(int sourceFolder, const char* source, int destinationFolder, const char* destination);

/// Returns the error number with which removing an item would fail, or 0. Assumes that the item's folder may
/// be changed, and doesn't look at what lies below the item.
int removalObstacle(int folder, const char* name);

/// Does the same, but also checks the permissions of the item's folder.
int removalObstacle(const Path& item);

/// Returns once everything written to the volume of an item has reached it. Returns 0 or the error number.
int flushVolume(const Path& item);

/// Returns `CocoaError::fromErrno` for a failed write. Looks up the name of the volume only if the sentence
/// needs it.
PlatformError writeError(CocoaError::Operation operation, int errnoValue, const Path& item,
                         const Path& destination = {});

}  // namespace quarn
