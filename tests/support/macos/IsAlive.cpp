#include "tests/support/IsAlive.h"

#include <chrono>
#include <libproc.h>
#include <sys/proc.h>
#include <thread>

namespace scene {

bool isAlive(pid_t process) {
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  proc_bsdinfo found{};
  const int size = ::proc_pidinfo(process, PROC_PIDTBSDINFO, 0, &found, sizeof found);
  return size == static_cast<int>(sizeof found) && found.pbi_status != SZOMB;
}

}  // namespace scene
