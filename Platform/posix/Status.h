#pragma once

#include <optional>
#include <sys/stat.h>

#include "Platform/FileSystem.h"

namespace quarn {

/// What `lstat` tells, in our terms.
FileAttributes attributesFrom(const struct stat& status);
FileKind kindFrom(mode_t mode);

/// The kind that a folder tells of one of its entries (`d_type`); nothing where the file system leaves it
/// unknown.
std::optional<FileKind> entryKind(unsigned char type);

}  // namespace quarn
