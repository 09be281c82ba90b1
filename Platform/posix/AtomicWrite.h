#pragma once

#include <string_view>

#include "Platform/Path.h"

namespace quarn {

/// See `FileSystem::writeAtomically`. Returns 0 or the error number; after a failure nothing has changed and
/// no other file is left behind. Also removes temporary files that a killed run left in the folder.
int writeAtomically(const Path& file, std::string_view content);

}  // namespace quarn
