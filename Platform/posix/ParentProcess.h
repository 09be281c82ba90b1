#pragma once

namespace quarn {

/// The process that started a process, or took it over from one that has ended; 0 if there is none.
int parentOf(int process);

}  // namespace quarn
