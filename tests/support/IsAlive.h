#pragma once

#include <sys/types.h>

namespace scene {

/// Neither gone nor ended and only waiting to be collected. A signal sent a moment ago has had its effect.
bool isAlive(pid_t process);

}  // namespace scene
