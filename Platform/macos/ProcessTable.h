#pragma once

#include <string>
#include <vector>

namespace quarn {

/// Returns the identifiers of all current processes, including those of other users.
std::vector<int> processes();

/// Returns the path of the file that a process runs, spelled as on the disk; after its bundle has been
/// renamed, the new path. Empty for a process that has ended.
std::string executableOf(int process);

}  // namespace quarn
