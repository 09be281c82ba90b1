#pragma once

#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>

/// What the shared copying code needs from each system. Unless a comment says otherwise, the functions return
/// 0 or the error number.
namespace quarn {

/// An item: its name in an open folder.
struct EntryAt {
  int folder;
  const char* name;
};

/// Copies the bytes of an open file, and its holes if both volumes support them.
int copyContent(int source, const struct stat& status, int destination);

/// Gives an open copy the owner, extended attributes, mode and times of its open source. Leaves out what the
/// other volume can't store at all and attributes that only the system may set. Fails if anything else can't
/// be set.
int copyMetadata(int source, const struct stat& status, int destination);
/// Does the same for a link, and for a FIFO. A FIFO isn't opened, because that could wake the program at its
/// other end.
int copyLinkMetadata(const EntryAt& source, const struct stat& status, const EntryAt& destination);
int copyFifoMetadata(const struct stat& status, const EntryAt& destination);

/// Removes from an item of a copy the modes and locks that would prevent removing it or what it holds.
void unlockCopy(int folder, const char* name);

// Extended attributes of an open item, by the system calls of these names: -1 with `errno` set is a failure.
ssize_t listAttributes(int item, char* names, std::size_t size);
ssize_t getAttribute(int item, const char* name, char* value, std::size_t size);
int setAttribute(int item, const char* name, const char* value, std::size_t size);

/// Returns whether an extended attribute that was refused with this error number may be left out: an
/// attribute that belongs to the system, one that has vanished meanwhile, or any attribute on a volume
/// without extended attributes.
bool mayLeaveBehind(int errnoValue, const char* name);

}  // namespace quarn
