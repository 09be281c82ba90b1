#include <thread>

#include "Platform/posix/PosixPlatform.h"

namespace quarn {

Moment SystemClock::now() const {
  return std::chrono::system_clock::now();
}

std::chrono::steady_clock::time_point SystemClock::steadyNow() const {
  return std::chrono::steady_clock::now();
}

void SystemClock::sleep(std::chrono::milliseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace quarn
