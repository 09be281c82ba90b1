#pragma once

#include <cstdint>
#include <string>

#include "Platform/Platform.h"

/// Allocated sizes as the system accounts for them, and byte counts for people. `SizingService` measures in
/// another way, and the two are deliberately separate.
namespace quarn::SizeCalculator {

/// Returns the bytes allocated for a file, or for all regular files below a folder. Leaves out hidden items
/// and everything below them. Follows no links, counts a hard link once per name, and counts what can't be
/// read as 0.
std::int64_t size(const ReadOnlyPlatform& platform, const Path& item);

/// Returns a text such as "12.3 MB": KB, MB or GB in powers of 1000.
std::string format(std::int64_t bytes);

}  // namespace quarn::SizeCalculator
