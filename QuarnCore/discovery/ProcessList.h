#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn::ProcessList {

/// Returns those lines of `ps` that are of interest, one per process with its name and arguments. Leaves out
/// this process and its ancestors: their arguments name the application that is to move, which doesn't mean
/// that it is running. Returns nothing if `ps` can't be run or its output isn't UTF-8.
std::vector<std::string> lines(const ReadOnlyPlatform& platform,
                               const std::function<bool(const std::string& line)>& isOfInterest);

}  // namespace quarn::ProcessList
