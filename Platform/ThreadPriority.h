#pragma once

namespace quarn {

enum class ThreadPriority {
  userInitiated,  ///< the priority of the calling thread
  utility,        ///< lower than anything that a person waits for
  background,     ///< runs when nothing else wants to
};

/// Asks the system to run the calling thread at a priority. A refusal is ignored.
void setCurrentThreadPriority(ThreadPriority priority);

}  // namespace quarn
