#pragma once

#include <string>

#include "Platform/Path.h"

namespace quarn {

/// The name of the volume that holds a path, of which the last component need not exist.
std::string volumeName(const Path& path);

}  // namespace quarn
