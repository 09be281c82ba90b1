#pragma once

#include "bench/Contest.h"

namespace bench {

/// How many system calls a command makes from the start of its program to its end, with its output thrown
/// away. Only its own are counted, and not those of the tools that it starts. Ends this program if the
/// command doesn't succeed.
long systemCalls(const Command& command);

}  // namespace bench
