#pragma once

#include "Platform/Platform.h"

namespace quarn::MoverStasher {

/// Clears a failed copy out of the way without deleting it: to the user's Trash, else to
/// ".QuarnTrash" beside it as "<name>-<seconds since 1970>". If that fails too it stays where it is.
/// Nothing there is fine. Never throws.
void stash(Platform& platform, const Path& item);

}  // namespace quarn::MoverStasher
