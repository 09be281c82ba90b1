#pragma once

#include <optional>
#include <string>
#include <time.h>

// What the systems ask in different words.

/// Of the item itself, also of a link.
timespec modificationTime(const std::string& path);
/// Gives an item an extended attribute such as a person may set, always the same one; false where the volume
/// keeps none.
bool setAttribute(const std::string& path, const std::string& value);
/// Absent where the item has none.
std::optional<std::string> attribute(const std::string& path);
/// Sets or clears the flag that keeps an item from being removed by anybody; false where that can't be done.
bool setLocked(const std::string& path, bool on);
