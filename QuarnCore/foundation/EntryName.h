#pragma once

#include <string_view>

namespace quarn::EntryName {

/// Returns whether a text can be the name of one entry in a folder. Empty texts, ".", ".." and texts with a
/// slash or a NUL can't: joined to the path of a folder, they would name the folder itself or something
/// outside it.
bool isOne(std::string_view text);

}  // namespace quarn::EntryName
