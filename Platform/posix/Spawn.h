#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include "Platform/Path.h"

namespace quarn {

/// Starts a tool in a process group of its own, with no signal blocked or ignored and no descriptor above 2.
/// `output` and `error` become its standard output and standard error; -1 leaves ours. Returns 0 or the error
/// number; after a failure nothing runs. An argument that contains a NUL gives EINVAL, because the tool would
/// receive only the text before it.
int spawn(const Path& executable, const std::vector<std::string>& arguments, int output, int error,
          pid_t& process);

}  // namespace quarn
