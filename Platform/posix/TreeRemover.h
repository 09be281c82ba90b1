#pragma once

#include "Platform/posix/PathAt.h"

namespace quarn {

/// Removes an item, a folder with its contents, a link by itself. Stops at the first failure and gives
/// its number, else 0.
int removeTree(const PathAt& item);

/// Likewise a copy of ours that stays unfinished, whatever of modes and locks it has been given by then.
int removeCopy(const PathAt& item);

}  // namespace quarn
