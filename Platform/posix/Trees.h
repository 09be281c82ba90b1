#pragma once

#include "Platform/FileSystem.h"
#include "Platform/posix/PathAt.h"
#include "Platform/system/SystemCalls.h"

namespace quarn {

/// Whether a listing or a walk leaves an item out.
inline bool isLeftOut(Hidden hidden, int folder, const char* name) {
  if (hidden == Hidden::included) return false;
  return name[0] == '.' || (hidden == Hidden::skipped && hasHiddenFlag(folder, name));
}

/// `FileSystem::walk` by open folders: one opening and two reads a folder, one look-up for an item whose
/// attributes are asked for.
void walkTree(const Path& root, Hidden hidden, WalkVisitor& visitor);

/// Copies an item with everything below it to a place where nothing stands. Gives 0 or the number of the
/// failure; what was made by then has been removed again, and nothing else. An item that holds its own
/// destination, or a mounted volume, can't be copied.
int copyTree(const PathAt& source, const PathAt& destination, const Path& destinationParent);

/// Gives a folder or a file the owner, attributes, mode and times of another one. 0, or the number of the
/// failure.
int copyItemMetadata(const PathAt& source, const PathAt& destination);

/// Removes an item, a folder with its contents, a link by itself. Stops at the first failure and gives
/// its number, else 0.
int removeTree(const PathAt& item);

/// Likewise a copy of ours that stays unfinished, whatever of modes and locks it has been given by then.
int removeCopy(const PathAt& item);

}  // namespace quarn
