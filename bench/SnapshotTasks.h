#pragma once

#include <cstddef>
#include <string>

#include "Platform/Platform.h"

/// What `bench-subject` does for the rows on snapshots. Each returns whether it found what was expected.
namespace bench {

bool capturesAll(const quarn::Platform& platform, const std::string& root, std::size_t expected);

/// Makes two snapshots of so many paths, of which one in a hundred is new in the second one, and prints the
/// seconds that their difference took, and the megabytes that the process took at most.
bool timesDifference(std::size_t count);

/// Does the same with sorted lists of texts.
bool timesMergeOfLists(std::size_t count);

}  // namespace bench
