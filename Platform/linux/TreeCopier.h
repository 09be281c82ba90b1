#pragma once

#include "Platform/posix/PathAt.h"

namespace quarn {

/// Copies an item with everything below it to a place where nothing stands. Gives 0 or the number of the
/// failure; what was made by then has been removed again, and nothing else.
int copyTree(const PathAt& source, const PathAt& destination);

}  // namespace quarn
