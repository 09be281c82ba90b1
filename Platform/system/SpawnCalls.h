#pragma once

#include <spawn.h>

/// What starting a tool asks of each system, so that the tool inherits nothing but what it is handed.
namespace quarn {

/// Makes a pipe whose ends a tool that is started does not inherit. Returns false, with `errno` set, on
/// failure.
bool makePipe(int ends[2]);

/// Makes a tool that is started inherit no descriptor above 2.
void closeAbove2(posix_spawn_file_actions_t& actions);

}  // namespace quarn
