#pragma once

#include <string>

#include "Platform/Platform.h"

/// Clearing things out of the way without deleting them: to the user's Trash, else into the folder
/// ".QuarnTrash" beside the item. If that fails too the item stays where it is. Nothing there is fine.
/// Nothing here throws.
namespace quarn {

namespace FileStash {
/// An item, or a dangling link. Its name beside is "<name>-<reason>-<time>".
void moveAside(Platform& platform, const Path& item, const std::string& reason);
}  // namespace FileStash

namespace MoverStasher {
/// A failed copy. Its name beside is "<name>-<seconds since 1970>".
void stash(Platform& platform, const Path& item);
}  // namespace MoverStasher

}  // namespace quarn
