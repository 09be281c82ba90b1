#pragma once

#include <string>

#include "Platform/Platform.h"

namespace quarn::TrashOrBeside {

inline constexpr const char* folderName = ".QuarnTrash";

/// Moves an item to the user's Trash, else into the folder beside it under `nameBeside`. Says nothing
/// of a failure: then the item stays where it is.
void put(Platform& platform, const Path& item, const std::string& nameBeside);

}  // namespace quarn::TrashOrBeside
