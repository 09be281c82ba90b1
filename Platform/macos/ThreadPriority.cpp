#include "Platform/ThreadPriority.h"

#include <pthread/qos.h>

namespace quarn {

void setCurrentThreadPriority(ThreadPriority priority) {
  if (priority == ThreadPriority::userInitiated) return;
  // Quality-of-service classes, which macOS uses instead of nice values for threads (pthread/qos.h).
  const auto quality = priority == ThreadPriority::utility ? QOS_CLASS_UTILITY : QOS_CLASS_BACKGROUND;
  pthread_set_qos_class_self_np(quality, 0);
}

}  // namespace quarn
