#pragma once

#include "Platform/system/CopyCalls.h"

namespace quarn {

/// Copies one item that is no folder: a file with its holes, a link as a link, a FIFO as a new FIFO. Keeps
/// mode, times and extended attributes, and the owner where that is allowed. Replaces nothing. Gives 0 or the
/// error number of the failure, and then nothing is left of the copy; a socket or a device can't be copied.
int copyFile(const EntryAt& source, const struct stat& status, const EntryAt& destination);

/// Copies the extended attributes between open items. A volume that keeps none at all gets none, and
/// attributes that only the system may set are left behind; one of the person's own that can't be given is a
/// failure. Gives 0 or the error number of the failure.
int copyExtendedAttributes(int source, int destination);

}  // namespace quarn
