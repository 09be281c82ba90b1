#pragma once

#include "Platform/Platform.h"

namespace quarn::CurrentFolder {

/// Returns the current folder. Throws `CLIError` if it has been removed.
Path required(const ReadOnlyPlatform& platform);

}  // namespace quarn::CurrentFolder
