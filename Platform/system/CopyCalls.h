#pragma once

#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>

/// What the shared code that copies asks of each system. Gives 0, or the error number of the failure, unless
/// it says otherwise.
namespace quarn {

/// A name in an open folder.
struct EntryAt {
  int folder;
  const char* name;
};

/// Copies the bytes of an open file, with its holes where both volumes know them.
int copyContent(int source, const struct stat& status, int destination);

/// Gives an open copy the owner, extended attributes, mode and times of its open source. What the other
/// volume as a whole can't keep is left behind, as are attributes that only the system may set; anything else
/// that can't be given is a failure.
int copyMetadata(int source, const struct stat& status, int destination);
/// The same for a link, and for a FIFO, which isn't opened, since that could wake the program at its other
/// end.
int copyLinkMetadata(const EntryAt& source, const struct stat& status, const EntryAt& destination);
int copyFifoMetadata(const struct stat& status, const EntryAt& destination);

/// Takes from an item of a copy what it was given and what keeps it, or what it holds, from being removed.
void unlockCopy(int folder, const char* name);

// Extended attributes of an open item, by the system's calls of these names: -1 with `errno` is a failure.
ssize_t listAttributes(int item, char* names, std::size_t size);
ssize_t getAttribute(int item, const char* name, char* value, std::size_t size);
int setAttribute(int item, const char* name, const char* value, std::size_t size);

/// Whether an attribute may be left behind that was refused with this number: one of the system's own, one
/// that vanished meanwhile, or any on a volume that keeps none.
bool mayLeaveBehind(int errnoValue, const char* name);

}  // namespace quarn
