#pragma once

#include <sys/stat.h>

namespace quarn {

/// A name in an open folder.
struct EntryAt {
  int folder;
  const char* name;
};

/// Copies one item that is no folder: a file with its holes, a link as a link, a FIFO as a new FIFO.
/// Keeps mode, times and extended attributes, and the owner where that is allowed. Gives 0 or the number of
/// the failure, and then nothing is left of the copy; a socket or a device can't be copied. Replaces
/// nothing.
int copyFile(const EntryAt& source, const struct stat& status, const EntryAt& destination);

// What each system answers for it. 0, or the number of the failure.

/// The bytes of an open file, with its holes where both volumes know them.
int copyContent(int source, const struct stat& status, int destination);
/// Gives an open copy the owner, extended attributes, mode and times of its open source. What the other
/// volume as a whole can't keep is left behind, as are attributes that only the system may set; anything
/// else that can't be given is a failure.
int copyMetadata(int source, const struct stat& status, int destination);
/// The same for a link, and for a FIFO, whose opening could wake the program at its other end.
int copyLinkMetadata(const EntryAt& source, const struct stat& status, const EntryAt& destination);
int copyFifoMetadata(const struct stat& status, const EntryAt& destination);
/// Takes from an item of a copy what it was given and what keeps it, or what it holds, from being removed.
void unlockCopy(int folder, const char* name);

}  // namespace quarn
