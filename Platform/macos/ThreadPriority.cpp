#include "Platform/posix/ThreadPriority.h"

#include <pthread/qos.h>

namespace quarn {

void lowerPriorityOfThisThread() {
  pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
}

}  // namespace quarn
