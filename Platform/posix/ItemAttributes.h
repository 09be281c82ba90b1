#pragma once

#include <optional>

#include "Platform/FileSystem.h"

namespace quarn {

/// What an item itself is; a link is described, never its target. Nothing, with `errno` set, if it can't
/// be told.
std::optional<FileAttributes> itemAttributes(int folder, const char* name);

}  // namespace quarn
