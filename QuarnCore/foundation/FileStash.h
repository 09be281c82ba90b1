#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

/// Moves items out of the way without deleting them: to the user's Trash, or else into a ".QuarnTrash" folder
/// beside the item. There, a name that is taken gets "-2", "-3" and so on at its end, and in one that would
/// be too long the item's own name is shortened. If both fail, the item stays where it is. Does nothing if
/// the item is missing. Nothing here throws.
namespace quarn {

namespace FileStash {
/// The name of the folder beside an item that is used when the Trash can't be.
inline constexpr const char* folderName = ".QuarnTrash";
Path folderBeside(const Path& item);

/// Moves an item or a dangling link. In ".QuarnTrash" its name is "<name>-<reason>-<time>". Returns where it
/// is now, or nothing if it is where it was or is missing.
std::optional<Path> moveAside(Platform& platform, const Path& item, const std::string& reason);
}  // namespace FileStash

namespace MoverStasher {
/// Moves a failed copy. In ".QuarnTrash" its name is "<name>-<seconds since 1970>".
void stash(Platform& platform, const Path& item);
}  // namespace MoverStasher

}  // namespace quarn
