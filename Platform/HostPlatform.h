#pragma once

#include "Platform/Platform.h"

namespace quarn {

/// Returns the operating system that this program runs on. Only the entry and tests call it; all other code
/// is handed a platform.
Platform& hostPlatform();

}  // namespace quarn
