#pragma once

#include <string>

#include "Platform/Platform.h"

namespace quarn::FileStash {

/// Clears an item, or a dangling link, out of the way without deleting it: to the user's Trash, else
/// to ".QuarnTrash" beside it as "<name>-<reason>-<time>". If that fails too it stays where it is.
/// Nothing there is fine. Never throws.
void moveAside(Platform& platform, const Path& item, const std::string& reason);

}  // namespace quarn::FileStash
