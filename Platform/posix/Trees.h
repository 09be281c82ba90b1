#pragma once

#include "Platform/FileSystem.h"
#include "Platform/posix/PathAt.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {

/// Returns whether a listing or a walk leaves an item out.
inline bool isLeftOut(Hidden hidden, int folder, const char* name) {
  if (hidden == Hidden::included) return false;
  return name[0] == '.' || (hidden == Hidden::skipped && hasHiddenFlag(folder, name));
}

/// See `FileSystem::walk`. Works through open folders: one open and two reads per folder, and one look-up per
/// item whose attributes are asked for.
void walkTree(const Path& root, Hidden hidden, WalkVisitor& visitor);

/// See `FileSystem::walkSorted`. Needs the same system calls.
void walkTreeSorted(const Path& root, Hidden hidden, WalkVisitor& visitor);

/// Copies an item and everything below it to a path where nothing exists. Returns 0 or the error number;
/// after a failure it has removed what it made, and nothing else. An item that contains its own destination
/// or a mounted volume can't be copied.
int copyTree(const PathAt& source, const PathAt& destination, const Path& destinationParent);

/// Gives a folder or a file the owner, attributes, mode and times of another one. Returns 0 or the error
/// number.
int copyItemMetadata(const PathAt& source, const PathAt& destination);

/// Removes an item: a folder with its contents, a link by itself. Stops at the first failure. Returns 0 or
/// the error number.
int removeTree(const PathAt& item);

/// Removes an unfinished copy that we made. Clears modes and locks that the copy has already been given and
/// that would prevent this.
int removeCopy(const PathAt& item);

}  // namespace quarn
