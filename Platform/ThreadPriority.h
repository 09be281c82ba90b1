#pragma once

namespace quarn {

enum class ThreadPriority {
  userInitiated,  ///< that of the thread which asks
  utility,        ///< behind what a person waits for
  background,     ///< when nothing else wants to run
};

/// Asks the system to run the calling thread so; a refusal is ignored.
void setCurrentThreadPriority(ThreadPriority priority);

}  // namespace quarn
