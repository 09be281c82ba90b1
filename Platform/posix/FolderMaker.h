#pragma once

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// See `FileSystem::createFolder`.
Result<void> makeFolder(const Path& folder);

}  // namespace quarn
