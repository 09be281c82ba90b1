#pragma once

#include <cstdint>
#include <string>

#include "Platform/Platform.h"

/// Allocated sizes as the system accounts for them, and byte counts for people. `SizingService` is the
/// other measure; the two are kept apart.
namespace quarn::SizeCalculator {

/// Bytes allocated for a file, or for all regular files below a folder, hidden ones and what is below
/// them left out. Links are not followed, a hard link counts once a name, what can't be read counts as 0.
std::int64_t size(const ReadOnlyPlatform& platform, const Path& item);

/// "12.3 MB": KB, MB or GB of powers of 1000.
std::string format(std::int64_t bytes);

}  // namespace quarn::SizeCalculator
