#pragma once

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// `FileSystem::createFolder`.
Result<void> makeFolder(const Path& folder);

}  // namespace quarn
