#pragma once

#include <string_view>

#include "Platform/Path.h"

namespace quarn {

/// `FileSystem::writeAtomically`. Gives 0 or the number of the failure; then nothing has changed and no
/// other file is left behind.
int writeAtomically(const Path& file, std::string_view content);

}  // namespace quarn
