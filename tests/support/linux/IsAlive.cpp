#include "tests/support/IsAlive.h"

#include <chrono>
#include <string>
#include <thread>

#include "tests/support/Content.h"

namespace scene {

bool isAlive(pid_t process) {
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  const std::string status = contentOf("/proc/" + std::to_string(process) + "/stat");
  // The name of the program, in brackets, may hold anything; the state stands behind it, as in proc(5).
  const auto bracket = status.rfind(") ");
  return bracket != std::string::npos && status[bracket + 2] != 'Z' && status[bracket + 2] != 'X';
}

}  // namespace scene
