#pragma once

#include <optional>

#include "Platform/FileSystem.h"

namespace quarn {

/// The kind that a folder tells of one of its entries (`d_type`); nothing where the file system leaves it
/// unknown.
std::optional<FileKind> entryKind(unsigned char type);

}  // namespace quarn
