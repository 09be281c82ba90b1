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
  // Linux gives every thread a nice value of its own, so the process as a whole stays as it is.
  const auto thread = static_cast<id_t>(::syscall(SYS_gettid));
  ::setpriority(PRIO_PROCESS, thread, niceValue(priority));
}

}  // namespace quarn
