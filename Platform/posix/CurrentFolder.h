#pragma once

#include "Platform/Path.h"

namespace quarn {

/// `Places::currentFolder`.
Path currentFolder();

}  // namespace quarn
