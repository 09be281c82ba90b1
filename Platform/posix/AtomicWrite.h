#pragma once

#include <string_view>

#include "Platform/Path.h"

namespace quarn {

/// `FileSystem::writeAtomically`. Gives 0 or the number of the failure; then nothing has changed and no
/// other file is left behind. What a run that was killed has left in the folder is cleared away.
int writeAtomically(const Path& file, std::string_view content);

}  // namespace quarn
