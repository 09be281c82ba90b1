#pragma once

#include "Platform/system/CopyCalls.h"

namespace quarn {

/// Copies one item that isn't a folder: a file with its holes, a link as a link, a FIFO as a new FIFO. Keeps
/// mode, times and extended attributes, and the owner if permitted. Replaces nothing. Returns 0 or the error
/// number; after a failure nothing of the copy is left. Sockets and devices can't be copied.
int copyFile(const EntryAt& source, const struct stat& status, const EntryAt& destination);

/// Copies the extended attributes between open items. A volume without extended attributes gets none, and
/// attributes that only the system may set are left out. If one of the user's own attributes can't be set,
/// the copy fails. Returns 0 or the error number.
int copyExtendedAttributes(int source, int destination);

}  // namespace quarn
