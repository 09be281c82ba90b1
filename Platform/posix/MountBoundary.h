#pragma once

#include <sys/types.h>

namespace quarn {

/// Whether an open folder, met inside a tree of `device`, is the top of something mounted there. What each
/// system answers; a failure to tell counts as true.
bool isMountedOver(dev_t device, int folder);

}  // namespace quarn
