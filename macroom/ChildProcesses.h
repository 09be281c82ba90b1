#pragma once

#include <sys/types.h>
#include <vector>

namespace quarn::room::ChildProcesses {

/// The children of that process as /proc shows them now, zombies included.
std::vector<pid_t> of(pid_t parent);

/// Ends all descendants of this process and reaps them. It has to be their reaper. `spared`, a tracer, is not
/// killed but left without anyone to trace, upon which it cleans up and ends by itself.
void endAll(pid_t spared = -1);

}  // namespace quarn::room::ChildProcesses
