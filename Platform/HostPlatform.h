#pragma once

#include "Platform/Platform.h"

namespace quarn {

/// The operating system that this program runs on. For the entry, and for tests: everybody else is handed it.
Platform& hostPlatform();

}  // namespace quarn
