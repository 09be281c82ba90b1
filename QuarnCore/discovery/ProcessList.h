#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn::ProcessList {

/// The lines of interest among those that `ps` prints: one a process, its name and its arguments. This
/// process and those that started it are left out: their arguments name the application that is to move,
/// and say nothing about whether it runs. Empty if `ps` can't be had or understood.
std::vector<std::string> lines(const ReadOnlyPlatform& platform,
                               const std::function<bool(const std::string& line)>& isOfInterest);

}  // namespace quarn::ProcessList
