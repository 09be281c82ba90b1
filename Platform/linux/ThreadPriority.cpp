#include "Platform/posix/ThreadPriority.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quarn {

void lowerPriorityOfThisThread() {
  const auto thread = static_cast<id_t>(::syscall(SYS_gettid));
  ::setpriority(PRIO_PROCESS, thread, 10);
}

}  // namespace quarn
