#include "Platform/macos/MacFileSystem.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stdio.h>

#include "Platform/macos/FoundationError.h"
#include "Platform/macos/FoundationText.h"
#include "Platform/macos/PrivateFolder.h"
#include "Platform/posix/PathAt.h"
#include "Platform/posix/ResolvedPath.h"

namespace quarn {
namespace {

using CocoaError::Operation;

/// Takes nobody else's place, not even that of an item which appears at the last moment, and gives the
/// name the bytes that were asked for. Foundation promises neither.
bool isRenamed(const Path& source, const Path& destination) {
  const PathAt from(source), to(destination);
  return !from.error() && !to.error() &&
         ::renameatx_np(from.folder(), from.name(), to.folder(), to.name(), RENAME_EXCL) == 0;
}

}  // namespace

// Resolved and standardized by hand: Foundation decomposes every name in the path that it gives back.
Path MacFileSystem::resolvingLinks(const Path& path) const {
  const auto found = resolved(path);
  return found ? withoutPrivateFolder(*found) : standardized(path);
}

Path MacFileSystem::standardized(const Path& path) const {
  const auto found = goesUp(path) ? resolved(path) : std::nullopt;
  return withoutPrivateFolder(found ? *found : path.simplified());
}

Result<void> MacFileSystem::remove(const Path& item) {
  @autoreleasepool {
    NSString* path = foundationPath(item);
    NSError* error = nil;
    if (path && [NSFileManager.defaultManager removeItemAtPath:path error:&error]) return {};
    return foundationError(Operation::remove, error, item);
  }
}

Result<void> MacFileSystem::move(const Path& source, const Path& destination) {
  if (isRenamed(source, destination)) return {};
  @autoreleasepool {
    // Knows other volumes, volumes without the exclusive rename, and names that differ in case alone.
    NSString* from = foundationPath(source);
    NSString* to = foundationPath(destination);
    NSError* error = nil;
    if (from && to && [NSFileManager.defaultManager moveItemAtPath:from toPath:to error:&error]) return {};
    return foundationError(Operation::move, error, source, destination);
  }
}

}  // namespace quarn
