#pragma once

#include <optional>
#include <sys/stat.h>

#include "Platform/FileSystem.h"

namespace quarn {

/// Converts what lstat(2) returns, except for the times, which each system names in its own way.
FileAttributes attributesFrom(const struct stat& status);
Moment momentFrom(const struct timespec& time);
FileKind kindFrom(mode_t mode);

/// Converts the type that a folder stores for an entry (`d_type`). Returns nothing if the file system doesn't
/// store it.
std::optional<FileKind> entryKind(unsigned char type);

}  // namespace quarn
