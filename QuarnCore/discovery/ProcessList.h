#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn::ProcessList {

/// One line a process, its name and its arguments, as `ps` prints them, a heading first. This process
/// and those that started it are left out: their arguments name the application that is to move, and
/// say nothing about whether it runs. Empty if `ps` can't be had or understood.
std::vector<std::string> lines(Platform& platform);

}  // namespace quarn::ProcessList
