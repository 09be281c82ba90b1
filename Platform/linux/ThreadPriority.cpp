#include "Platform/ThreadPriority.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quarn {
namespace {

int niceValue(ThreadPriority priority) {
  switch (priority) {
    case ThreadPriority::userInitiated:
      return 0;
    case ThreadPriority::utility:
      return 5;
    case ThreadPriority::background:
      return 15;
  }
  return 0;
}

}  // namespace

void setCurrentThreadPriority(ThreadPriority priority) {
  if (priority == ThreadPriority::userInitiated) return;
  // On Linux each thread has its own nice value (setpriority(2), notes), so this doesn't affect the rest of
  // the process.
  const auto thread = static_cast<id_t>(::syscall(SYS_gettid));
  ::setpriority(PRIO_PROCESS, thread, niceValue(priority));
}

}  // namespace quarn
