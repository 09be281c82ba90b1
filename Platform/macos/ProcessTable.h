#pragma once

#include <string>
#include <vector>

namespace quarn {

/// The numbers of all processes, other people's too, as the kernel has them now.
std::vector<int> processes();

/// The file that a process runs, in the disk's own spelling; where its bundle was renamed, by the new name.
/// Empty for a process that has ended.
std::string executableOf(int process);

}  // namespace quarn
