#pragma once

#include <spawn.h>

/// What starting a tool asks of each system, so that the tool inherits nothing but what it is handed.
namespace quarn {

/// A pipe of which a tool that is started inherits neither end. False, with `errno` set, if there is none to
/// be had.
bool makePipe(int ends[2]);

/// Has a tool that is started inherit no descriptor above 2.
void closeAbove2(posix_spawn_file_actions_t& actions);

}  // namespace quarn
