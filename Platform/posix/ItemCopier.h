#pragma once

#include <sys/stat.h>

namespace quarn {

/// A name in an open folder.
struct EntryAt {
  int folder;
  const char* name;
};

// What each system answers for the copying of trees.

/// Copies one item that is no folder: a file with its holes, a link as a link, a FIFO as a new FIFO.
/// Keeps mode, times and extended attributes, and the owner where that is allowed. Gives 0 or the number of
/// the failure, and then nothing is left of the copy; a socket or a device can't be copied. Replaces
/// nothing.
int copyFile(const EntryAt& source, const struct stat& status, const EntryAt& destination);

/// Gives an open copy the owner, extended attributes, mode and times of its open source. What the other
/// volume as a whole can't keep is left behind, as are attributes that only the system may set; anything
/// else that can't be given is a failure.
int copyMetadata(int source, const struct stat& status, int destination);

/// Takes from an item of a copy what it was given and what keeps it, or what it holds, from being removed.
void unlockCopy(int folder, const char* name);

}  // namespace quarn
