#pragma once

#include <sys/stat.h>

#include "Platform/FileSystem.h"

namespace quarn {

/// What `lstat` tells, in our terms.
FileAttributes attributesFrom(const struct stat& status);
FileKind kindFrom(mode_t mode);

}  // namespace quarn
