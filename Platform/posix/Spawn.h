#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// Starts a tool in a process group of its own, with no signal blocked or ignored and no descriptor
/// above 2. `output` and `error` become its standard output and standard error; -1 leaves ours.
/// Gives 0 or the number of the failure, and then nothing runs: EINVAL for a word with a zero byte, which
/// would reach the tool as the text before it.
int spawn(const Path& executable, const std::vector<std::string>& arguments, int output, int error,
          pid_t& process);

}  // namespace quarn
