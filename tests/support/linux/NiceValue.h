#pragma once

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

/// Of the calling thread: 0 as a rule, and the larger the further behind the others.
inline int niceValue() {
  return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)));
}
